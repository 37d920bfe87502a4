#pragma once

#include <QByteArray>
#include <QString>
#include <memory>
#include <optional>

#include "engine/paths/part_layout.h"
#include "engine/workers/download_worker_delegate.h"
#include "engine/workers/rate_meter.h"
#include "platform/base/clock.h"
#include "platform/base/error.h"
#include "platform/net/http_message.h"
#include "platform/net/url.h"

namespace http {
class BandwidthAccount;
}

namespace engine {

/// Domain of the errors that workers make themselves.
inline const QString workerErrorDomain = QStringLiteral("com.tarnworks.Orlop.DQDownloadWorker");

enum class WorkerErrorCode {
    CannotWrite = 1,  ///< The underlying error says why.
    MissingTargetPath = 2,
    WrongLength = 3,    ///< More or fewer bytes than announced.
    WrongPart = 4,      ///< Another part of the file than asked for, or of another file.
    NotGiven = 5,       ///< An answer that holds nothing of the file, and no other follows.
    OtherAnswer = 6,    ///< A whole answer that cannot be the file.
    FolderLocked = 7,   ///< The sandbox keeps this program out of the folder.
    WrongChecksum = 8,  ///< The file is not what was expected.
};

[[nodiscard]] platform::Error makeWorkerError(WorkerErrorCode code, const QString& text,
                                              const platform::Error* underlying = nullptr);

enum DQDownloadWorkerStatus : unsigned {
    DQDownloadWorkerStatusIdle = 0,
    DQDownloadWorkerStatusRunning = 1,
    DQDownloadWorkerStatusTruncated = 2,  ///< Stopped on purpose at an offset; counts as done.
    DQDownloadWorkerStatusFinished = 3,   ///< Its transfer ended, or it had nothing left to do.
    DQDownloadWorkerStatusFailed = 4
};

/// What to ask for.
struct WorkerRequest {
    platform::Url url;
    QString requestMethod;  ///< Empty: the default.
    /// The complete header set of the request.
    std::optional<platform::HTTPHeaders> requestHeaders;
    /// Added where no complete set is given.
    std::optional<platform::HTTPHeaders> additionalRequestHeaders;
    QByteArray requestBody;
    QString referer;
    /// Sent with a range, so that a file that has changed comes whole (RFC 9110, 13.1.5). Empty:
    /// nothing is known by which a change could be told.
    QString rangeValidator;
    /// The limit of the download that it belongs to. Null: none.
    std::shared_ptr<http::BandwidthAccount> bandwidth;

    /// From now on asks `other`, to which an answer has led. A server that it was not meant for
    /// gets neither its secrets nor what was posted.
    void goTo(const platform::Url& other);
};

struct Context;

/// Carries one range of one file over one connection into one file. Not used twice.
///
/// The delegate is not owned and must outlive the worker. Destroying a worker stops its transfer.
/// Main thread.
class DQDownloadWorkerPrototype : public std::enable_shared_from_this<DQDownloadWorkerPrototype> {
public:
    using Pointer = std::shared_ptr<DQDownloadWorkerPrototype>;

    virtual ~DQDownloadWorkerPrototype() = default;
    DQDownloadWorkerPrototype(const DQDownloadWorkerPrototype&) = delete;
    DQDownloadWorkerPrototype& operator=(const DQDownloadWorkerPrototype&) = delete;

    /// Of the kind that can fetch from this address. Null: there is no address.
    [[nodiscard]] static Pointer downloadWorkerForURL(const Context& context,
                                                      const platform::Url& url);
    /// Of the same kind, with the same delegate, request and path and without a range. Null for
    /// null.
    [[nodiscard]] static Pointer downloadWorkerWithDownloadWorker(const Pointer& worker);

    /// For log lines.
    [[nodiscard]] QString description() const;
    /// Whether a resumed transfer goes to a new file beside the one it resumes.
    [[nodiscard]] virtual bool resumesInSeparateFile() const { return true; }

    [[nodiscard]] DQDownloadWorkerDelegate* delegate() const { return _delegate; }
    /// To be called before the first bytes are stored.
    void willStoreBytes() {
        if (_delegate)
            _delegate->downloadWorkerWillStoreBytes(*this);
    }
    [[nodiscard]] bool isDebugLogged() const { return _delegate && _delegate->isDebugLogged(); }
    void setDelegate(DQDownloadWorkerDelegate* delegate) { _delegate = delegate; }
    [[nodiscard]] WorkerRequest& request() { return request_; }
    [[nodiscard]] const WorkerRequest& request() const { return request_; }
    /// Also while it runs.
    virtual void setBandwidth(std::shared_ptr<http::BandwidthAccount> account) {
        request_.bandwidth = std::move(account);
    }
    /// Empty: the delegate is asked.
    [[nodiscard]] const QString& targetPath() const { return _targetPath; }
    void setTargetPath(const QString& path) { _targetPath = path; }
    [[nodiscard]] QString targetPathByFallingBackToDelegate();
    /// Where the bytes of its part lie, if not in a file of their own at the target path.
    void setPlace(const PartPlace& place) { place_ = place; }
    [[nodiscard]] PartPlace place() const {
        return place_.isShared() ? place_ : PartPlace{_targetPath, 0, {}};
    }

    /// Where this worker's part begins in the whole file.
    [[nodiscard]] qint64 fractionStartByte() const { return _fractionStartByte; }
    void setFractionStartByte(qint64 offset) { _fractionStartByte = offset; }
    /// How much of it was on disk before.
    [[nodiscard]] qint64 resumeByteOffset() const { return _resumeByteOffset; }
    void setResumeByteOffset(qint64 offset) { _resumeByteOffset = offset; }
    /// Its last byte in the whole file; 0: to the end of the file.
    [[nodiscard]] qint64 endByte() const { return _endByte; }
    void setEndByte(qint64 offset) { _endByte = offset; }
    /// Of its part it is to take so many bytes and no more, though more were asked for: others
    /// follow in the same file, and it ends there as Truncated. 0: all that comes. False: it has
    /// more already.
    [[nodiscard]] virtual bool setBound(qint64 length);
    [[nodiscard]] qint64 bound() const { return bound_; }
    /// Bytes of its part that are there.
    [[nodiscard]] qint64 receivedBytes() const { return _resumeByteOffset + _downloadedBytes; }
    /// Whether a part is asked for; that of a first worker may begin at the first byte.
    [[nodiscard]] bool hasRange() const {
        return _fractionStartByte + _resumeByteOffset > 0 || _endByte > 0;
    }

    /// The file, if all of it has come at once and lies in no file yet. Empty: it does not.
    [[nodiscard]] const QByteArray& wholeBody() const { return _wholeBody; }

    /// What the answer is going to deliver; below 1: unknown.
    [[nodiscard]] qint64 expectedBytes() const { return _expectedBytes; }
    /// What it has delivered.
    [[nodiscard]] qint64 downloadedBytes() const { return _downloadedBytes; }
    /// Whether any of that came over the network, and was not there before.
    [[nodiscard]] bool hasReceivedBytes() const { return hasReceivedBytes_; }
    [[nodiscard]] DQDownloadWorkerStatus status() const { return _status; }
    /// Whether it is being sent something in answer to its request.
    [[nodiscard]] bool isServed() const {
        return isServed_ && _status == DQDownloadWorkerStatusRunning;
    }
    /// Bytes a second of late, or of the last moments before it ended. Nothing: not known yet.
    [[nodiscard]] std::optional<double> rate() const;
    /// Takes the place of another one that was too slow, which is not done twice.
    [[nodiscard]] bool isReplacement() const { return isReplacement_; }
    void setReplacement() { isReplacement_ = true; }
    /// Of the last answer; -1: the transfer has no such thing, or none has come.
    [[nodiscard]] qint64 answeredStatus() const { return answeredStatus_; }
    [[nodiscard]] bool isDone() const {
        return _status == DQDownloadWorkerStatusTruncated ||
               _status == DQDownloadWorkerStatusFinished;
    }
    /// For a part that is on disk already: done without having been started.
    void setFinishedBefore(qint64 downloadedBytes);

    /// False: it cannot be started, and its status is Failed.
    [[nodiscard]] bool start();
    /// Stops, cuts the file at `offset` and reports the end. False: it could not, and goes on.
    [[nodiscard]] virtual bool truncateAtOffset(qint64 offset);
    /// Creates the file before any byte comes, so that nobody else takes its name. False: it could
    /// not be created, which the first byte will report.
    [[nodiscard]] virtual bool claimTargetPath() { return true; }
    /// The answer is not what was asked for but the whole file: begins at its first byte, with a
    /// path to be asked for anew.
    void becomeWholeTransfer();

protected:
    explicit DQDownloadWorkerPrototype(const Context& context) : context_(context) {}

    [[nodiscard]] const Context& context() const { return context_; }

    [[nodiscard]] virtual Pointer makeAnother() const = 0;
    [[nodiscard]] virtual bool startWithRequest(const WorkerRequest& request, const QString& range,
                                                platform::Seconds timeOut) = 0;
    /// Forgets the file that it was writing, after an answer that was not what was asked for.
    virtual void forgetTarget() = 0;

    void processResponse(const WorkerResponse& response, qint64 expectedContentLength);
    void processDownloadedBytes(qint64 count);
    [[nodiscard]] platform::Seconds now() const;
    void setWholeBody(const QByteArray& body) { _wholeBody = body; }
    void failWithError(const platform::Error& error);
    void finish();
    virtual void reset();

    /// Empty: the whole file.
    [[nodiscard]] QString rangeHeader() const;

private:
    const Context& context_;
    DQDownloadWorkerDelegate* _delegate = nullptr;
    WorkerRequest request_;
    QString _targetPath;
    PartPlace place_;
    QByteArray _wholeBody;
    qint64 _fractionStartByte = 0;
    qint64 _resumeByteOffset = 0;
    qint64 _endByte = 0;
    qint64 bound_ = 0;
    qint64 _expectedBytes = 0;
    qint64 _downloadedBytes = 0;
    bool hasReceivedBytes_ = false;
    bool isServed_ = false;
    bool isReplacement_ = false;
    RateMeter rateMeter_;
    std::optional<double> lastRate_;  ///< When it ended.
    qint64 answeredStatus_ = -1;
    DQDownloadWorkerStatus _status = DQDownloadWorkerStatusIdle;
};

}  // namespace engine
