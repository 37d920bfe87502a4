#pragma once

#include <QByteArray>
#include <cstdint>
#include <optional>

#include "http/extras/file_output.h"
#include "http/extras/progress_reporter.h"
#include "http/extras/request_cache.h"
#include "http/request/request_parts.h"
#include "platform/base/error.h"

namespace http {

class HTTPRequest;
class RequestRun;

/// What a request can do that no download needs: be answered by a cache, write a file by itself,
/// report progress to delegates of its own, probe for another request. The course of a request
/// calls these hooks where something could be done beside it; for a request that wants none of
/// that, they do nothing.
///
/// The request's loop, under its lock.
class RequestExtras {
public:
    RequestExtras(HTTPRequest& request, RequestParts parts, RequestRun& run);

    // Ahead of a send.

    /// Another message is to be made.
    void messageBegins();
    /// Nothing: go on. A file that is gone on with asks for a part.
    [[nodiscard]] std::optional<platform::Error> askForRest();
    /// True: the request has been answered.
    [[nodiscard]] bool answerInPlaceOfSend() { return cache_.answerBeforeSend(); }
    void sendIsPrepared();
    void sendBegins();
    /// Before the same message is sent once more after a silence.
    [[nodiscard]] std::optional<platform::Error> sendIsRepeated();

    // During it.

    /// True: the request has been answered, and the body is not wanted.
    [[nodiscard]] bool answerInPlaceOfBody() { return cache_.answerAfterHead(); }
    /// False: it must not get to where the body of a later answer goes.
    [[nodiscard]] bool wantsBody() const;
    /// Whether the body is a file's, if it is no delegate's.
    [[nodiscard]] bool takesBody() const;
    /// `inflated`: null where it is not inflated on the way.
    [[nodiscard]] std::optional<platform::Error> write(const QByteArray& received,
                                                       const QByteArray* inflated);
    /// Four times a second.
    void timePasses() { progress_.updateProgressIndicators(); }
    /// Of the body in hand, or of the one that a probe asked about. Nothing: not announced.
    void lengthIsKnown(std::optional<std::uint64_t> length);

    // At its end.

    struct End {
        bool isFinal = false;  ///< Nothing follows from the response.
        bool isWhole = true;   ///< It has been read to its end.
    };
    /// What went wrong with the file. Nothing: nothing.
    [[nodiscard]] std::optional<platform::Error> responseEnds(const End& end);
    /// Deletes what nobody can go on with.
    void abandonBody() { file_.abandon(); }
    /// True: the failure has been made up for.
    [[nodiscard]] bool answerInPlaceOfFailure() { return cache_.answerFailure(); }

    // Probes.

    /// It asks in place of another request, and tells nobody anything.
    [[nodiscard]] bool isProbe() const;
    /// The failure is the other's.
    void passOnFailure(const platform::Error& error);

    [[nodiscard]] bool isCacheUsed() const { return cache_.hasAnswered(); }

private:
    [[nodiscard]] std::optional<platform::Error> finishFile(bool isFinal);

    RequestParts parts_;
    ProgressReporter progress_;
    FileOutput file_;
    RequestCache cache_;
};

}  // namespace http
