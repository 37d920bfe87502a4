#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "engine/record/known_file.h"
#include "platform/base/timer.h"
#include "platform/net/url.h"

namespace http {
class HTTPRequest;
}

namespace engine {

class DQDownload;

/// What lies at another address, compared with what has come of a download.
struct AddressAnswer {
    enum class Verdict {
        SameFile,    ///< Validators or length say so.
        OtherFile,   ///< They say it is another one.
        CannotTell,  ///< It answered, and neither side says enough.
        NotGiven,    ///< It did not answer, or with a refusal.
    };
    Verdict verdict = Verdict::NotGiven;
    KnownFile file;          ///< As the answer tells it.
    qint64 statusCode = -1;  ///< -1: none came.
};

/// Mirrors give the same file tags of their own; only those of the same server can be compared.
[[nodiscard]] AddressAnswer::Verdict compareFiles(const KnownFile& known, const KnownFile& found,
                                                  bool isSameServer);

/// Asks another address for the first byte of its file, and hangs up as soon as its head is there.
/// Nothing of the download is touched. Main thread.
class AddressCheck {
public:
    /// `answered` is called once, unless this goes before.
    AddressCheck(const DQDownload& download, const platform::Url& url,
                 std::function<void(const AddressAnswer&)> answered);
    ~AddressCheck();
    AddressCheck(const AddressCheck&) = delete;
    AddressCheck& operator=(const AddressCheck&) = delete;

private:
    void noteHead();
    void end(AddressAnswer::Verdict verdict);

    const KnownFile known_;
    const bool isSameServer_;
    std::function<void(const AddressAnswer&)> answered_;
    AddressAnswer answer_;
    std::shared_ptr<http::HTTPRequest> request_;
    platform::Timer deadline_;
};

/// From now on the download, which does not run, is fetched from there. With `file`, what has come
/// is taken for a part of that file; without, a resumption finds out whether it is. What was meant
/// for the former server, the new one does not get.
void takeNewAddress(DQDownload& download, const platform::Url& url,
                    const std::optional<KnownFile>& file);

}  // namespace engine
