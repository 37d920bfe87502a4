#include "app/failures/failure_sentence.h"

#include <QRegularExpression>
#include <QStorageInfo>
#include <cerrno>
#include <vector>

#include "app/checksums/checksum_texts.h"
#include "engine/lifecycle/download.h"
#include "engine/lifecycle/space_watch.h"
#include "engine/record/known_file.h"
#include "engine/record/user_settings.h"
#include "engine/workers/download_worker_prototype.h"
#include "http/http_request_error.h"
#include "links/format/byte_counts.h"
#include "links/text/localization.h"
#include "platform/files/files.h"
#include "platform/net/http_authentication.h"
#include "platform/net/http_read_stream.h"

namespace app {

using namespace Qt::Literals::StringLiterals;
using engine::WorkerErrorCode;
using http::HTTPRequestErrorCode;
using links::filledFormat;
using links::localized;
using links::translatable;
using platform::Error;

namespace {

/// What goes into the sentence.
enum class Detail { None, Progress, Space, Proxy };

struct Cause {
    QString domain;
    int code;
    const char* sentence;
    Detail detail = Detail::None;
};

constexpr const char* closed = translatable("The server closed the connection.");
constexpr const char* unusable = translatable("The server’s answer cannot be used.");
constexpr const char* otherPart =
    translatable("The server sent something else than what was asked for.");
constexpr const char* full = translatable("The disk is full.");
constexpr const char* forbidden =
    translatable("The folder cannot be written to. Choose another one.");

const std::vector<Cause>& causes() {
    using namespace platform;
    const auto code = [](auto value) { return static_cast<int>(value); };
    static const std::vector<Cause> table{
        {networkErrorDomain, networkErrorHostNotFound,
         translatable("There is no server of this name. Check the address and your connection.")},
        {networkErrorDomain, networkErrorRefused,
         translatable("The server refused the connection. Try again later.")},
        {networkErrorDomain, networkErrorCannotConnect,
         translatable("The server cannot be reached. Try again later.")},
        {networkErrorDomain, networkErrorTimedOut,
         translatable("The server cannot be reached. Try again later.")},
        {networkErrorDomain, networkErrorConnectionLost, closed, Detail::Progress},
        {networkErrorDomain, networkErrorCutShort, closed, Detail::Progress},
        {networkErrorDomain, networkErrorBadServerResponse, unusable},
        {networkErrorDomain, networkErrorWrongPart, unusable},
        {networkErrorDomain, networkErrorProxySettings,
         translatable("The settings for proxies cannot be understood. Check them.")},
        {networkErrorDomain, networkErrorProxyNotFound,
         translatable("There is no proxy of the name in the network settings.")},
        {networkErrorDomain, networkErrorProxyRefused,
         translatable("The proxy does not lead to the server."), Detail::Proxy},
        {posixErrorDomain, EPIPE, closed, Detail::Progress},
        {securityErrorDomain, securityErrorCertificateOfOtherHost,
         translatable("The certificate is not valid for this host.")},
        {securityErrorDomain, securityErrorCertificateExpired,
         translatable("The certificate of the server has expired, or the clock is wrong.")},
        {securityErrorDomain, securityErrorCertificateNotYetValid,
         translatable("The certificate of the server is not valid yet, or the clock is wrong.")},
        {securityErrorDomain, securityErrorCertificate,
         translatable("Nobody who is trusted vouches for the server’s certificate.")},
        {securityErrorDomain, securityErrorClientCertificate,
         translatable("The server wants a certificate from you.")},
        {securityErrorDomain, securityErrorHandshake,
         translatable("No secure connection to the server could be made.")},
        {http::httpRequestErrorDomain, code(HTTPRequestErrorCode::TimedOut),
         translatable("The server stopped answering. Try again later.")},
        {http::httpRequestErrorDomain, code(HTTPRequestErrorCode::Authentication),
         translatable("A name and a password are needed.")},
        {http::httpRequestErrorDomain, code(HTTPRequestErrorCode::UnableToCreateRequest),
         translatable("Nothing can be fetched from this address.")},
        {http::httpRequestErrorDomain, code(HTTPRequestErrorCode::TooMuchRedirection),
         translatable("The address leads on to others without end.")},
        {http::httpRequestErrorDomain, code(HTTPRequestErrorCode::ApplyingCredentials),
         translatable("The server cannot be answered with this name and password.")},
        {httpStreamErrorDomain, httpStreamErrorUnsendable,
         translatable("The server’s kind of login has no way to send a character of the name or "
                      "the password.")},
        {engine::workerErrorDomain, code(WorkerErrorCode::WrongLength), unusable, Detail::Progress},
        {engine::workerErrorDomain, code(WorkerErrorCode::WrongPart), otherPart},
        {engine::workerErrorDomain, code(WorkerErrorCode::OtherAnswer),
         translatable(
             "Something else came in place of the file. Does the network ask for a login?")},
        {engine::workerErrorDomain, code(WorkerErrorCode::FolderLocked),
         translatable("The sandbox keeps Orlop out of the folder. Resume to unlock it.")},
        {engine::workerErrorDomain, code(WorkerErrorCode::CannotWrite),
         translatable("The file cannot be written.")},
        {engine::workerErrorDomain, code(WorkerErrorCode::WrongChecksum),
         translatable("This is not the file that was expected.")},
        {posixErrorDomain, ENOSPC, full, Detail::Space},
        {posixErrorDomain, EDQUOT, full, Detail::Space},
        {posixErrorDomain, EACCES, forbidden},
        {posixErrorDomain, EPERM, forbidden},
        {posixErrorDomain, EROFS, forbidden},
        {posixErrorDomain, ENOENT, translatable("The file or its folder is gone.")},
        {posixErrorDomain, EIO, translatable("The disk reports an error.")},
        {posixErrorDomain, EMLINK,
         translatable("What has come lies under another name as well and is left alone.")},
        {posixErrorDomain, EFBIG, translatable("The file is too large for its disk.")},
    };
    return table;
}

/// Of the innermost error that is known; the outer ones say less. Null: none is.
const Cause* causeOf(const Error& error, const Error*& found) {
    if (error.underlying != nullptr)
        if (const Cause* const inner = causeOf(*error.underlying, found))
            return inner;
    for (const Cause& cause : causes()) {
        if (!error.is(cause.domain, cause.code))
            continue;
        found = &error;
        return &cause;
    }
    return nullptr;
}

QString progressSentence(const FailureCircumstances& circumstances) {
    if (circumstances.received < 1 || circumstances.expected <= circumstances.received)
        return {};
    return filledFormat(
        localized("The server closed the connection after %@ of %@."),
        {links::fileSizeText(circumstances.received), links::fileSizeText(circumstances.expected)});
}

QString spaceSentence(const FailureCircumstances& circumstances) {
    if (!circumstances.freeBytes)
        return {};
    if (*circumstances.freeBytes < 1)
        return filledFormat(localized("The disk is full: nothing is free on “%@”."),
                            {circumstances.volume});
    return filledFormat(localized("The disk is full: %@ free on “%@”."),
                        {links::fileSizeText(*circumstances.freeBytes), circumstances.volume});
}

/// Which proxy, and with which status, only the error's own words say.
QString proxySentence(const Error& error) {
    static const QRegularExpression form(u"^The proxy (\\S+) answered (\\d{3})"_s);
    const auto match = form.match(error.text);
    return match.hasMatch() ? filledFormat(localized("The proxy %@ answered %@."),
                                           {match.captured(1), match.captured(2)})
                            : QString();
}

}  // namespace

QString failureSentence(const Error& error, const FailureCircumstances& circumstances) {
    const Error* found = nullptr;
    const Cause* const cause = causeOf(error, found);
    if (cause == nullptr)
        return localized("The download failed. The log says more.");
    QString detailed;
    switch (cause->detail) {
        case Detail::Progress:
            detailed = progressSentence(circumstances);
            break;
        case Detail::Space:
            detailed = spaceSentence(circumstances);
            break;
        case Detail::Proxy:
            detailed = proxySentence(*found);
            break;
        case Detail::None:
            break;
    }
    return detailed.isEmpty() ? localized(cause->sentence) : detailed;
}

QString refusalSentence(const engine::DQDownload& download) {
    if (download.status() != engine::DQDownloadStatusAborted && !download.wasGivenUp())
        return {};
    const int code = download.userSettings().value(engine::keys::statusCode).toInt();
    switch (code) {
        case 401:
        case 407:
            return localized("A name and a password are needed.");
        case 403:
            return localized("The server does not give this file out.");
        case 404:
            return localized("The server does not have this file.");
        case 410:
            return localized("The server does not have this file any more.");
        default:
            return code >= 500 ? localized("The server has a fault. Try again later.") : QString();
    }
}

QString failureSentence(engine::DQDownload& download) {
    if (download.isWrongFile())
        return wrongFileSentence(download);
    const Error* const error = download.lastError();
    if (!error)
        return {};
    const Error* found = nullptr;
    const Cause* const cause = causeOf(*error, found);
    const Detail detail = cause != nullptr ? cause->detail : Detail::None;
    const QString partial = download.intermediateDownloadTargetPath();
    FailureCircumstances circumstances;
    if (detail == Detail::Progress) {
        circumstances.expected = engine::knownFile(download.userSettings()).length;
        // Of several parts the first says little about the whole.
        if (!download.userSettings().contains(engine::keys::accelerationWorkers))
            circumstances.received = platform::fileSize(partial).value_or(0);
    }
    if (detail == Detail::Space) {
        const QStorageInfo volume(engine::folderShortOfSpace(download));
        circumstances.volume = volume.displayName();
        if (volume.isValid())
            circumstances.freeBytes = volume.bytesAvailable();
    }
    return failureSentence(*error, circumstances);
}

}  // namespace app
