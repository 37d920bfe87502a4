#include "engine/lifecycle/new_address.h"

#include <utility>

#include "engine/context.h"
#include "engine/lifecycle/download.h"
#include "engine/workers/download_worker_delegate.h"
#include "engine/workers/range_answer.h"
#include "engine/workers/user_agent.h"
#include "http/http_request.h"
#include "platform/net/status_codes.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {

using Verdict = AddressAnswer::Verdict;

namespace {

constexpr platform::Seconds timeOut = 20;

bool isStrong(const QString& entityTag) {
    return !entityTag.isEmpty() && !entityTag.startsWith(u"W/");
}

void removeSecrets(UserSettings& settings) {
    QVariantMap captured = settings.value(keys::request).toMap();
    for (const QString& part : {keys::requestAllHeaders, keys::requestPartialHeaders}) {
        QVariantMap headers = captured.value(part).toMap();
        for (const QString& name : headers.keys()) {
            if (name.compare(u"Cookie"_s, Qt::CaseInsensitive) == 0 ||
                name.compare(u"Authorization"_s, Qt::CaseInsensitive) == 0)
                headers.remove(name);
        }
        if (captured.contains(part))
            captured.insert(part, headers);
    }
    if (!captured.isEmpty())
        settings.set(keys::request, captured);
    settings.remove(keys::unkeptCookies);
}

void adoptValidators(UserSettings& settings, const KnownFile& file) {
    // The partial file stays the one it is.
    const QVariant number = settings.value(keys::partialFileNumber);
    const QVariant checksum = settings.value(keys::serverChecksum);
    const KnownFile before = knownFile(settings);
    storeKnownFile(settings, file);
    if (file.length < 1 && before.length > 0)
        settings.set(keys::expectedBytes, before.length);
    settings.set(keys::partialFileNumber, number);
    settings.set(keys::serverChecksum, checksum);
}

}  // namespace

Verdict compareFiles(const KnownFile& known, const KnownFile& found, bool isSameServer) {
    if (isSameServer && isStrong(known.entityTag) && isStrong(found.entityTag) &&
        known.entityTag != found.entityTag)
        return Verdict::OtherFile;
    const bool areLengthsKnown = known.length > 0 && found.length > 0;
    if (areLengthsKnown)
        return known.length == found.length && known.contentEncoding == found.contentEncoding
                   ? Verdict::SameFile
                   : Verdict::OtherFile;
    if (isStrong(known.entityTag) && known.entityTag == found.entityTag)
        return Verdict::SameFile;
    return Verdict::CannotTell;
}

AddressCheck::AddressCheck(const DQDownload& download, const platform::Url& url,
                           std::function<void(const AddressAnswer&)> answered)
    : known_(knownFile(download.userSettings())),
      isSameServer_(download.URL().hasSameOrigin(url)),
      answered_(std::move(answered)),
      request_(http::HTTPRequest::requestWithURL(url)),
      deadline_(download.context().loop) {
    platform::HTTPHeaders headers;
    if (const auto agent = userAgentForURL(url, download.context().defaults))
        headers.set(u"User-Agent"_s, *agent);
    if (const QString referer = download.userSettings().string(keys::referer); !referer.isEmpty())
        headers.set(u"Referer"_s, referer);
    // A HEAD would do, but signed addresses are good for one method only.
    headers.set(u"Range"_s, u"bytes=0-0"_s);
    request_->setRequestHeaders(std::move(headers));
    request_->setAllowCompressedResponse(false);
    request_->setTimeOutSeconds(timeOut);
    http::RequestBlocks blocks;
    blocks.dataReceivedBlock = [this](const QByteArray&) { noteHead(); };
    blocks.completionBlock = [this] { noteHead(); };
    blocks.failureBlock = [this] { end(Verdict::NotGiven); };
    request_->setBlocks(std::move(blocks));
    deadline_.start(timeOut, [this] { end(Verdict::NotGiven); });
    request_->startAsynchronous();
}

AddressCheck::~AddressCheck() {
    if (request_)
        request_->clearDelegatesAndCancel();
}

void AddressCheck::noteHead() {
    answer_.statusCode = request_->responseStatusCode();
    if (answer_.statusCode != platform::status::ok &&
        answer_.statusCode != platform::status::partialContent)
        return end(Verdict::NotGiven);
    WorkerResponse response;
    response.headers = request_->responseHeaders();
    response.statusCode = answer_.statusCode;
    const QString length = response.headers
                               ? response.headers->value(u"Content-Length"_s).value_or(QString())
                               : QString();
    UserSettings head;
    rememberFile(head, response,
                 answer_.statusCode == platform::status::ok ? length.toLongLong() : 0);
    rememberLengthFromPart(head, response);
    answer_.file = knownFile(head);
    end(speaksAgainstFile(response, answer_.file.length, known_)
            ? Verdict::OtherFile
            : compareFiles(known_, answer_.file, isSameServer_));
}

void AddressCheck::end(Verdict verdict) {
    answer_.verdict = verdict;
    deadline_.cancel();
    std::exchange(request_, nullptr)->clearDelegatesAndCancel();
    std::exchange(answered_, {})(AddressAnswer(answer_));
}

void takeNewAddress(DQDownload& download, const platform::Url& url,
                    const std::optional<KnownFile>& file) {
    UserSettings& settings = download.userSettings();
    const QString name = download.name();
    if (!url.hasSameOrigin(download.URL()))
        removeSecrets(settings);
    download.setURL(url);
    settings.remove(keys::originalURL);
    settings.remove(keys::rangesDisabled);
    settings.remove(keys::accelerationFailed);
    settings.remove(keys::statusCode);
    if (settings.contains(keys::responseURL))
        settings.set(keys::responseURL, url.absoluteString());
    if (download.holdsPartialData())
        download.setName(name);
    if (const auto checksum = checksumFromFragment(url.fragment().value_or(QString())))
        settings.set(keys::checksum, checksum->text());
    if (file)
        adoptValidators(settings, *file);
}

}  // namespace engine
