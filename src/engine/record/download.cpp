#include "engine/record/download.h"

#include <QDir>
#include <utility>

#include "engine/acceleration/acceleration_settings.h"
#include "engine/acceleration/accelerator.h"
#include "engine/admission/download_manager.h"
#include "engine/admission/queue_admission.h"
#include "engine/lifecycle/download_lifecycle.h"
#include "engine/lifecycle/download_starter.h"
#include "engine/lifecycle/response_handler.h"
#include "engine/paths/download_folder.h"
#include "engine/paths/intermediate_files.h"
#include "engine/paths/support_folder.h"
#include "engine/presentation/action_buttons.h"
#include "engine/presentation/status_text.h"
#include "engine/record/download_parts.h"
#include "engine/record/rule_matching.h"
#include "links/names/file_names.h"
#include "links/paths/path_components.h"
#include "links/paths/sandbox.h"
#include "links/text/substrings.h"
#include "platform/base/log.h"
#include "platform/base/run_loop.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {

DownloadPtr DQDownload::downloadWithURLString(const QString& urlString, bool addToQueue) {
    return downloadWithURL(platform::Url::parse(urlString), addToQueue);
}

DownloadPtr DQDownload::downloadWithURL(const std::optional<platform::Url>& url, bool addToQueue) {
    if (!url || url->isEmpty())
        return nullptr;
    DownloadPtr download(new DQDownload(*url));
    download->setStatus(addToQueue ? DQDownloadStatusQueued : DQDownloadStatusPaused);
    if (addToQueue) {
        mainController().invalidateLongTermNumberOfQueuedOrDownloadingDownloads();
        startEligibleQueuedDownloadsWithTimer();
    }
    return download;
}

DQDownload::DQDownload(const platform::Url& url) : parts_(std::make_unique<Parts>(*this, url)) {
    // Fixes the date of its creation.
    static_cast<void>(date());
}

DQDownload::~DQDownload() {
    if (platform::hasMainRunLoop())
        platform::mainRunLoop().cancelAll(this);
}

QString DQDownload::description() const {
    // It is made for the log, where no password belongs.
    const QString location =
        URL().hasUserInfo() ? URL().forTransfer().absoluteString() : locationKey();
    const QString shown = platform::isDebugLogEnabled() ? location : anonymizedName();
    return u"<DQDownload: %1 0x%2>"_s.arg(shown).arg(reinterpret_cast<quintptr>(this), 0, 16);
}

// Address.

const platform::Url& DQDownload::URL() const {
    return identity().url();
}

QString DQDownload::URLString() const {
    return URL().absoluteString();
}

QString DQDownload::originalURLString() const {
    return identity().originalURLString();
}

QString DQDownload::comparisonURLString() const {
    return URLString();
}

void DQDownload::setURL(const platform::Url& url) {
    identity().setURL(url);
    // Only these are sorted by their hosts.
    if (matchesStatusMask(status(), unfinishedStatuses) && status() != DQDownloadStatusDownloading)
        invalidateQueuedAndDownloadingDownloads();
}

bool DQDownload::isDownloadPageURL() const {
    return identity().isDownloadPageURL();
}

void DQDownload::invalidateIconAndNameCache() {
    identity().invalidateIconAndNameCache();
}

void DQDownload::reevaluateDownloadPageURLStatus() {
    identity().reevaluateDownloadPageURLStatus();
}

const QString& DQDownload::queueRelevantHost() const {
    return identity().queueRelevantHost();
}

// Names.

void DQDownload::setName(const QString& name) {
    identity().setName(name);
}

QString DQDownload::name() const {
    return identity().name();
}

QString DQDownload::displayName() const {
    return identity().displayName();
}

QString DQDownload::anonymizedName() const {
    return identity().anonymizedName();
}

QString DQDownload::sortName() const {
    return identity().sortName();
}

QString DQDownload::locationKey() const {
    return identity().locationKey();
}

std::optional<QString> DQDownload::icon() const {
    return identity().icon();
}

bool DQDownload::isMatchForSearchStrings(const QStringList& strings, bool checkURL) const {
    return links::isMatchForSearchStrings(checkURL ? originalURLString() : name(), strings);
}

// Rules.

bool DQDownload::hostComponents(const QStringList& pattern, const QStringList& matchComponents) {
    return hostComponentsMatch(pattern, matchComponents);
}

bool DQDownload::hasHostFromArray(const QStringList& hosts) const {
    const auto original = platform::Url::parse(originalURLString());
    return isHostInPatterns(original ? original->host() : URL().host(), hosts);
}

bool DQDownload::hasExtensionFromArray(const QStringList& extensions) const {
    return hasExtensionInList(links::cleanFilename(name()), extensions);
}

bool DQDownload::matchesSpecialCase(const QVariantMap& rule) const {
    const QString hosts = u"Hosts"_s;
    const QString extensions = u"Extensions"_s;
    if (rule.contains(hosts) && !hasHostFromArray(rule.value(hosts).toStringList()))
        return false;
    if (rule.contains(extensions) && !hasExtensionFromArray(rule.value(extensions).toStringList()))
        return false;
    return rule.contains(hosts) || rule.contains(extensions);
}

// Dates.

QDateTime DQDownload::date() const {
    return dates().date();
}

QDateTime DQDownload::invalidateDate(bool reload) {
    return dates().invalidateDate(reload);
}

QDateTime DQDownload::doneDate() {
    return dates().doneDate();
}

// What survives a restart.

UserSettings& DQDownload::userSettings() {
    return parts_->settings;
}

const UserSettings& DQDownload::userSettings() const {
    return parts_->settings;
}

QVariantMap DQDownload::userSettingsArchiveWithPausedStatus(bool paused,
                                                            bool writeMetadataToDownloadBundle) {
    QVariantMap archive = userSettings().archive(URLString(), paused);
    if (userSettings().contains(keys::responseURL) && paths().hasIntermediateDownloadTargetPath()) {
        archive.insert(keys::resumePath, platform::abbreviateWithTilde(
                                             paths().intermediateDownloadTargetPath(false, false)));
        // While the file is being finished, its container may be on the way out.
        if (writeMetadataToDownloadBundle && !finisher().isBusy())
            paths().writeMetadata(archive);
    }
    if (userSettings().contains(keys::statusCode))
        archive.insert(keys::statusCode, userSettings().value(keys::statusCode));
    return archive;
}

void DQDownload::userSettingsFromArchive(const QVariantMap& archive) {
    userSettings().restore(archive);
}

// Paths.

QString DQDownload::pathByCheckingExistence(bool check) {
    return identity().pathByCheckingExistence(check);
}

QString DQDownload::path() {
    return pathByCheckingExistence(false);
}

bool DQDownload::fileExists() {
    return !pathByCheckingExistence(true).isEmpty();
}

QString DQDownload::pathToReveal() {
    const QString container = downloadContainerPath();
    if (matchesStatusMask(_status, unfinishedStatuses) && !container.isEmpty() &&
        platform::pathExists(container))
        return container;
    const QString file = path();
    const QString shown = links::isSandboxed() ? QFileInfo(file).canonicalFilePath() : file;
    return !shown.isEmpty() && platform::pathExists(shown) ? shown : QString();
}

QString DQDownload::downloadContainerPath() {
    return paths().downloadContainerPath();
}

void DQDownload::setIntermediateDownloadTargetPath(const QString& path) {
    const QString folder = links::stringByDeletingLastPathComponent(path);
    if (isDownloadContainer(folder) || folder == intermediateDownloadBasePath() ||
        folder == QDir::tempPath())
        paths().setIntermediateDownloadTargetPath(path);
    else
        platform::log(u"this is no place for a partial file: %1"_s.arg(path));
}

QString DQDownload::intermediateDownloadTargetPath() {
    return paths().intermediateDownloadTargetPath(userSettings().contains(keys::responseURL),
                                                  false);
}

QString DQDownload::downloadBasePath() {
    return engine::downloadBasePath(*this);
}

QString DQDownload::finalDownloadTargetPath() {
    return paths().finalDownloadTargetPath();
}

// Life.

void DQDownload::setStatus(DQDownloadStatus status) {
    const DQDownloadStatus before = std::exchange(_status, status);
    QueueAdmission::shared().statusDidChange(*this, before);
    if (hasMainController())
        mainController().statusDidChange(*this);
}

void DQDownload::startDownload() {
    startDownloadWithURL(std::nullopt, false);
}

void DQDownload::startDownloadWithURL(const std::optional<platform::Url>& url,
                                      bool extractedFromDownloadPage) {
    const auto keep = shared_from_this();
    engine::startDownload(*this, url, extractedFromDownloadPage);
}

void DQDownload::addToQueue() {
    queueDownload(*this);
}

void DQDownload::pause() {
    pauseDownload(*this);
}

void DQDownload::togglePause() {
    togglePauseOfDownload(*this);
}

void DQDownload::remove() {
    if (matchesStatusMask(_status, activeStatuses))
        mainController().decrementLongTermNumberOfQueuedOrDownloadingDownloads();
    removeAndMoveToTrashIfDone(false);
}

void DQDownload::removeAndMoveToTrash() {
    removeAndMoveToTrashIfDone(true);
}

void DQDownload::removeAndMoveToTrashIfDone(bool moveToTrash) {
    const auto keep = shared_from_this();
    removeDownload(*this, moveToTrash);
}

// Acceleration.

bool DQDownload::accelerates() const {
    return AccelerationSettings::acceleratesHost(queueRelevantHost());
}

void DQDownload::toggleAcceleration() {
    AccelerationSettings::toggleAccelerationOfHost(queueRelevantHost());
    mainController().updateDownloadListDisplay();
}

// Figures and texts.

double DQDownload::downloadCompletionFraction() const {
    if (_status == DQDownloadStatusDone)
        return 1;
    return _status == DQDownloadStatusDownloading ? transfer().downloadFraction() : 0;
}

QString DQDownload::downloadProgressDescription() const {
    return progressText(*this);
}

QString DQDownload::statusDescriptionWithLiveDetails(bool live) {
    return statusText(*this, live);
}

QString DQDownload::queueIndexDescription() const {
    return queueIndexText(*this);
}

QString DQDownload::pausedHostDescription() const {
    return pausedHostText(*this);
}

// Row.

bool DQDownload::canPerformActionWithIndex(unsigned index) {
    return canPerformAction(*this, index);
}

void DQDownload::performActionWithIndex(unsigned index) {
    performAction(*this, index);
}

void DQDownload::open() {
    openDownload(*this);
}

void DQDownload::reveal() {
    revealDownload(*this);
}

void DQDownload::openOriginalURL() {
    openOriginalURLOfDownload(*this);
}

void DQDownload::copyOriginalURL() {
    copyOriginalURLOfDownload(*this);
}

void DQDownload::copyPath() {
    copyPathOfDownload(*this);
}

void DQDownload::vanishInView(const std::shared_ptr<VanishView>& view, platform::Seconds delay) {
    const auto keep = shared_from_this();
    parts_->vanishing.vanishInView(view, delay);
}

bool DQDownload::isVanishing() const {
    return parts_->vanishing.isVanishing();
}

void DQDownload::performVanishStep() {
    parts_->vanishing.performVanishStep();
}

double DQDownload::vanishFraction() const {
    return parts_->vanishing.vanishFraction();
}

double DQDownload::vanishRowHeightFraction() const {
    return parts_->vanishing.vanishRowHeightFraction();
}

// The queue as a whole.

const std::deque<DownloadPtr>& DQDownload::queuedDownloads() {
    return QueueAdmission::shared().queuedDownloads();
}

const std::vector<DownloadPtr>& DQDownload::downloadingDownloads() {
    return QueueAdmission::shared().downloadingDownloads();
}

void DQDownload::invalidateQueuedAndDownloadingDownloads() {
    QueueAdmission::shared().invalidateQueuedAndDownloadingDownloads();
}

void DQDownload::startEligibleQueuedDownloadsWithTimer() {
    QueueAdmission::shared().startEligibleQueuedDownloadsWithTimer();
}

// Reports of the workers.

QString DQDownload::targetPathForDownloadWorker(const DQDownloadWorkerPrototype&) {
    return paths().intermediateDownloadTargetPath(true, true);
}

void DQDownload::resetProgressForDownloadWorker(DQDownloadWorkerPrototype&) {
    const auto keep = shared_from_this();
    if (transfer().workers().size() == 1)
        paths().discardPartialData();
    transfer().resetProgress();
}

void DQDownload::downloadWorkerDidReceiveResponse(DQDownloadWorkerPrototype& worker,
                                                  const WorkerResponse& response) {
    const auto keep = shared_from_this();
    if (transfer().contains(worker))
        handleResponse(*this, worker, response);
}

void DQDownload::downloadWorkerDidReceiveBytes(DQDownloadWorkerPrototype& worker, qint64) {
    const auto keep = shared_from_this();
    if (const qint64 offset = transfer().noteReceivedBytes(worker); offset >= 1)
        truncateFirstWorker(*this, offset);
}

void DQDownload::downloadWorkerDidFail(DQDownloadWorkerPrototype& worker,
                                       const platform::Error& error) {
    const auto keep = shared_from_this();
    if (transfer().contains(worker))
        handleFailure(*this, worker, error);
}

void DQDownload::downloadWorkerDidFinish(DQDownloadWorkerPrototype& worker) {
    const auto keep = shared_from_this();
    if (transfer().contains(worker))
        finisher().workerDidFinish(worker);
}

// Collaborators.

DownloadIdentity& DQDownload::identity() const {
    return parts_->identity;
}

DownloadDates& DQDownload::dates() const {
    return parts_->dates;
}

DownloadPaths& DQDownload::paths() const {
    return parts_->paths;
}

Transfer& DQDownload::transfer() const {
    return parts_->transfer;
}

DownloadFinisher& DQDownload::finisher() const {
    return parts_->finisher;
}

}  // namespace engine
