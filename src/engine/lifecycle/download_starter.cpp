#include "engine/lifecycle/download_starter.h"

#include <utility>

#include "engine/acceleration/accelerator.h"
#include "engine/context.h"
#include "engine/environment.h"
#include "engine/finishing/download_finisher.h"
#include "engine/finishing/finished_files.h"
#include "engine/lifecycle/download.h"
#include "engine/paths/download_paths.h"
#include "engine/paths/intermediate_files.h"
#include "engine/paths/part_layout.h"
#include "engine/record/known_file.h"
#include "engine/transfer/resume_plan.h"
#include "engine/transfer/speed_limit.h"
#include "engine/workers/debug_log.h"
#include "engine/workers/partial_file_marks.h"
#include "links/paths/sandbox.h"
#include "platform/base/log.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

using Worker = Transfer::Worker;

/// What a start does about the partial data that may be there.
enum class PartialData { Absent, Present, VolumeAway, Finished };

void discardData(DQDownload& download) {
    download.paths().discardPartialData();
    download.userSettings().remove(keys::accelerationWorkers);
    forgetFile(download.userSettings());
}

/// False: there is none.
bool adoptFinishedFile(DQDownload& download, const QString& finished) {
    if (finished.isEmpty())
        return false;
    platform::log(u"%1 was finished by an earlier run: %2"_s.arg(download.description(), finished));
    if (!download.userSettings().contains(keys::originalURL))
        download.userSettings().set(keys::originalURL, download.URLString());
    download.finisher().adoptFinishedFile(finished);
    return true;
}

PartialData lookForPartialData(DQDownload& download) {
    FinishedFiles& files = download.host().finishedFiles();
    // Of a new one there can be nothing.
    if (!download.userSettings().contains(keys::responseURL))
        return download.isRestored() && adoptFinishedFile(download, files.find(download))
                   ? PartialData::Finished
                   : PartialData::Absent;
    download.paths().confirmAccessToPartialData();
    const QString path = download.paths().intermediateDownloadTargetPath();
    // It may have begun anew beside this data, and been killed with the whole file in its place.
    if (!path.isEmpty() && platform::pathExists(path))
        return download.isRestored() && adoptFinishedFile(download, files.findMarked(download))
                   ? PartialData::Finished
                   : PartialData::Present;
    if (!path.isEmpty() && !platform::pathExists(platform::volumePath(path))) {
        download.host().volumeIsMissing(download);
        download.pause();
        return PartialData::VolumeAway;
    }
    if (adoptFinishedFile(download, files.find(download)))
        return PartialData::Finished;
    // Without a path there never was a file: the answer was an error.
    if (!path.isEmpty())
        platform::log(u"intermediate download file vanished: %1"_s.arg(path));
    discardData(download);
    download.userSettings().remove(keys::responseURL);
    return PartialData::Absent;
}

ResumePlan planForPartialData(DQDownload& download) {
    UserSettings& settings = download.userSettings();
    const QString path = download.paths().intermediateDownloadTargetPath();
    const bool areInPlace = layoutOfPartialData(path) == PartLayout::InPlace;
    if (!areInPlace) {
        dropUnsyncedTail(path);
        for (const QString& fragment : fragmentPathsForIntermediateDownloadTargetPath(path))
            dropUnsyncedTail(fragment);
    }
    std::vector<StoredFraction> recorded =
        fractionsFromArchive(settings.value(keys::accelerationWorkers), path);
    if (areInPlace)
        recorded = withFractionsSplitSince(std::move(recorded), path);
    if (!recorded.empty() && !settings.contains(keys::expectedBytes))
        settings.set(keys::expectedBytes, recorded.back().end + 1);
    return planResume(path, measurePartialFiles(path), recorded, knownFile(settings).length,
                      isMarkedFinishing(path));
}

/// The address that answered last. Nothing: it cannot be asked again.
std::optional<platform::Url> responseURL(const DQDownload& download) {
    auto url = platform::Url::parse(download.userSettings().string(keys::responseURL));
    const bool isUsable = url && !url->isEmpty() && url->isFile() == download.URL().isFile();
    return isUsable ? url : std::nullopt;
}

platform::HTTPHeaders headersFromDictionary(const QVariantMap& dictionary) {
    platform::HTTPHeaders headers;
    for (auto field = dictionary.cbegin(); field != dictionary.cend(); ++field)
        headers.set(field.key(), field.value().toString());
    return headers;
}

void applyRequestSettings(const DQDownload& download, const platform::Url& url,
                          WorkerRequest& request) {
    const UserSettings& settings = download.userSettings();
    if (!settings.contains(keys::request)) {
        request.referer = settings.string(keys::referer);
        return;
    }
    const QVariantMap captured = settings.value(keys::request).toMap();
    debugLog(download, [&] {
        return u"using request: %1"_s.arg(captured.value(keys::requestMethod).toString());
    });
    request.requestMethod = captured.value(keys::requestMethod).toString();
    if (captured.contains(keys::requestAllHeaders))
        request.requestHeaders =
            headersFromDictionary(captured.value(keys::requestAllHeaders).toMap());
    if (captured.contains(keys::requestPartialHeaders))
        request.additionalRequestHeaders =
            headersFromDictionary(captured.value(keys::requestPartialHeaders).toMap());
    if (const QString cookies = settings.string(keys::unkeptCookies); !cookies.isEmpty()) {
        if (!request.additionalRequestHeaders)
            request.additionalRequestHeaders.emplace();
        request.additionalRequestHeaders->set(u"Cookie"_s, cookies);
    }
    request.requestBody = captured.value(keys::requestBody).toByteArray();
    request.url = download.URL();
    request.goTo(url);
}

Worker::Pointer makePrimaryWorker(DQDownload& download, const platform::Url& url,
                                  const ResumePlan& plan) {
    Worker::Pointer worker = Worker::downloadWorkerForURL(download.context(), url);
    if (!worker)
        return nullptr;
    worker->setDelegate(&download);
    worker->setBandwidth(download.speedLimit().account());
    applyRequestSettings(download, url, worker->request());
    if (plan.kind == ResumePlan::Kind::Nothing)
        return worker;
    const QString path = download.paths().intermediateDownloadTargetPath();
    worker->setTargetPath(path);
    worker->setPlace(placeOfPart(layoutOfPartialData(path), path, path, 0));
    worker->request().rangeValidator = knownFile(download.userSettings()).rangeValidator();
    if (plan.kind == ResumePlan::Kind::Single) {
        worker->setResumeByteOffset(plan.size);
        return worker;
    }
    const qint64 end = plan.fractions.front().start;
    worker->setEndByte(end - 1);
    if (plan.primarySize < end)
        worker->setResumeByteOffset(plan.primarySize);
    else
        worker->setFinishedBefore(end);
    return worker;
}

/// In a sandbox the user may have to unlock the folder first, and can do anything while he is
/// asked.
bool hasAccessToFolder(DQDownload& download) {
    if (!links::isSandboxed())
        return true;
    const DQDownloadStatus before = download.status();
    const bool isUnlocked = download.paths().unlockDownloadFolder();
    if (download.isBeingRemoved() || download.status() != before)
        return false;
    if (!isUnlocked) {
        download.interruptUntilResumed(
            makeWorkerError(WorkerErrorCode::FolderLocked,
                            u"%1 has no access to its folder"_s.arg(download.description())));
    }
    return isUnlocked;
}

void startWorkers(DQDownload& download, const platform::Url& url, const ResumePlan& plan) {
    const auto kept = download.shared_from_this();
    if (!hasAccessToFolder(download))
        return;
    const Worker::Pointer worker = makePrimaryWorker(download, url, plan);
    if (!worker || (!worker->isDone() && !worker->start()))
        return download.abort();
    Transfer& transfer = download.transfer();
    transfer.startSpeedMeter();
    transfer.addWorker(worker);
    if (plan.kind == ResumePlan::Kind::Accelerated &&
        !addResumedWorkers(transfer, plan, download.host().connectionsFor(download)))
        return download.abort();
    download.host().downloadDidChange(download);
}

/// What a page gave without the pages that led to it, which would lead here again for ever, and at
/// the end of a long chain without further pages.
std::vector<platform::Url> linksOffChain(const std::vector<platform::Url>& found,
                                         const QStringList& chain, const PageReader* reader) {
    constexpr qsizetype longestChain = 8;
    const auto leadsBack = [&](const platform::Url& link) {
        return chain.contains(link.forTransfer().absoluteString());
    };
    std::vector<platform::Url> kept;
    for (const platform::Url& link : found) {
        const bool isTooDeep =
            chain.size() >= longestChain && reader && reader->isDownloadPageURL(link);
        if (leadsBack(link) || isTooDeep)
            platform::log(u"not reading the download page again: %1"_s.arg(link.absoluteString()));
        else
            kept.push_back(link);
    }
    return kept;
}

void adoptPage(DQDownload& download, const platform::Url& page,
               const links::ExtractedLinks& found) {
    // Paused meanwhile, by the user or by sleep.
    if (!download.isGettingDownloadPageSource())
        return;
    const QStringList chain =
        download.userSettings().value(keys::downloadPageChain).toStringList() +
        QStringList(page.forTransfer().absoluteString());
    const std::vector<platform::Url> urls =
        found.urls.size() > 1
            ? linksOffChain(found.urls, chain, download.context().environment.pageReader.get())
            : found.urls;
    if (!found.title.isEmpty())
        download.userSettings().set(keys::downloadPageTitle, found.title);
    if (urls.size() > 1) {
        download.host().openURLsOfPage(urls, chain);
        download.remove();
        return;
    }
    download.userSettings().set(keys::referer, page.absoluteString());
    download.startDownloadWithURL(urls.empty() ? std::nullopt : std::optional(urls.front()), true);
}

void readPage(DQDownload& download, const platform::Url& page) {
    download.setIsGettingDownloadPageSource(true);
    download.host().downloadDidChange(download);
    download.context().environment.pageReader->URLsFromDownloadPageWithTitle(
        page, [weak = download.weak_from_this(), page](const links::ExtractedLinks& found) {
            const auto kept = weak.lock();
            if (kept && !kept->isBeingRemoved())
                adoptPage(*kept, page, found);
        });
}

bool isDownloadPage(const DQDownload& download, const platform::Url& url) {
    if (url == download.URL())
        return download.isDownloadPageURL();
    const auto& reader = download.context().environment.pageReader;
    return reader && reader->isDownloadPageURL(url);
}

/// Whether a page's answer is still wanted.
bool acceptExtractedURL(DQDownload& download, const std::optional<platform::Url>& url) {
    const QString wanted = url ? url->absoluteString() : QString();
    if (!download.isGettingDownloadPageSource()) {
        debugLog(download, [&] {
            return u"%1 is not interested in extracted download page URL: %2"_s.arg(
                download.description(), wanted);
        });
        return false;
    }
    download.setIsGettingDownloadPageSource(false);
    if (!url && !platform::isDebugLogEnabled() && !download.isDebugLogged())
        platform::log(
            u"%1 cannot extract download page URL (enable debug logging for details)"_s.arg(
                download.description()));
    return true;
}

/// Goes on with partial data, or gives it up. False: there was nothing to go on with.
bool resume(DQDownload& download, const platform::Url& url) {
    const ResumePlan plan = planForPartialData(download);
    if (plan.kind == ResumePlan::Kind::Nothing) {
        discardData(download);
        return false;
    }
    const std::optional<platform::Url> answered = responseURL(download);
    const bool fits = plan.kind != ResumePlan::Kind::Damaged;
    debugLog(download, [&] {
        return u"%1 attempting resume from most recent response URL: %2"_s.arg(
            download.description(), (fits && answered ? *answered : url).absoluteString());
    });
    if (plan.kind == ResumePlan::Kind::Complete) {
        download.finisher().finishPartialData(plan);
        return true;
    }
    if (fits && answered) {
        if (plan.kind == ResumePlan::Kind::Single)
            download.userSettings().remove(keys::accelerationWorkers);
        startWorkers(download, *answered, plan);
        return true;
    }
    debugLog(download, [&] {
        return u"%1 damaged acceleration fractions or invalid most recent response URL: %2"_s.arg(
            download.description(), download.userSettings().string(keys::responseURL));
    });
    discardData(download);
    startWorkers(download, url, {});
    return true;
}

}  // namespace

void startDownload(DQDownload& download, const std::optional<platform::Url>& url,
                   bool extractedFromDownloadPage) {
    if (matchesStatusMask(download.status(), finishedStatuses))
        return;
    if (extractedFromDownloadPage && !acceptExtractedURL(download, url))
        return;
    if (download.finisher().isBusy()) {
        download.becomeDownloading();
        download.finisher().startWhenIdle();
        return;
    }
    const PartialData data = lookForPartialData(download);
    if (data == PartialData::VolumeAway || data == PartialData::Finished)
        return;
    if (download.transfer().hasWorkers()) {
        debugLog(download,
                 [&] { return u"%1 already has active workers"_s.arg(download.description()); });
        return;
    }
    download.becomeDownloading();
    const platform::Url start = url.value_or(download.URL());
    if (start.isEmpty())
        return download.abort();
    if (data == PartialData::Present && resume(download, start))
        return;
    if (!extractedFromDownloadPage && isDownloadPage(download, start))
        readPage(download, start);
    else
        startWorkers(download, start, {});
}

}  // namespace engine
