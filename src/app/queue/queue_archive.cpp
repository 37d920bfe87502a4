#include "app/queue/queue_archive.h"

#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <algorithm>
#include <cerrno>
#include <iterator>
#include <optional>
#include <utility>

#include "app/queue/archive_writer.h"
#include "app/settings.h"
#include "engine/paths/support_folder.h"
#include "engine/record/user_settings.h"
#include "engine/settings.h"
#include "links/text/localization.h"
#include "platform/base/log.h"
#include "platform/files/descriptor.h"
#include "platform/files/files.h"
#include "platform/files/property_list.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Our own file, and a long queue must not count as a damaged one: a download takes some 400 bytes.
constexpr qint64 mostBytesOfQueue = 1 << 30;
/// A write is followed by a rest of so many times what it took, so that a long queue whose
/// downloads end one after another is not written all the time.
constexpr double restPerWrite = 6;
constexpr platform::Seconds shortestRest = 0.1, longestRest = 2;
/// The same where every moment costs what comes down in it if we are killed.
constexpr double restPerWriteIfUrgent = 2;

bool isActive(const engine::DQDownload& download) {
    return engine::matchesStatusMask(download.status(), engine::activeStatuses);
}

Alert quitAlert() {
    return {Alert::Kind::QuitWhileDownloading,
            u"Wait! You seem to have forgotten something on the stove..."_s,
            u"Orlop is not done downloading yet.\n\nIf you quit now, Orlop will remember its "
            "downloads, but depending on the servers you were downloading from, downloads cannot "
            "always be resumed.\n\nDo you really want to quit now?"_s,
            u"Quit"_s, u"Cancel"_s};
}

}  // namespace

/// What an element was made from, and its text. All of them are kept for a long queue, and none but
/// what has changed is made anew.
struct QueueArchive::Cached {
    quint64 revision = 0;
    QByteArray element;
    QVariant parts;  ///< The workers that it names.
    bool paused = false;
    Form form;
    bool hasBegun = false;
};

QueueArchive::QueueArchive(QString path, Surroundings surroundings)
    : path_(std::move(path)), surroundings_(std::move(surroundings)), rest_(surroundings_.loop) {
    writer_ = std::make_unique<ArchiveWriter>(
        path_, surroundings_.queue.context().disks, surroundings_.loop,
        [this](const std::optional<platform::Error>& error) { didWrite(error); });
}

QueueArchive::~QueueArchive() {
    finish();
}

std::vector<QVariantMap> QueueArchive::read() {
    platform::TemporaryFile::removeStrays(QFile::encodeName(QFileInfo(path_).path()));
    const platform::FileContents contents = platform::readFile(path_, mostBytesOfQueue);
    if (contents.error && contents.error->is(platform::posixErrorDomain, ENOENT)) {
        return {};
    }
    if (contents.error) {
        platform::logUnreadableFile(path_, *contents.error);
        mayWrite_ = false;
        keepsIntermediateFiles_ = true;
        surroundings_.damaged({});
        return {};
    }
    const platform::PropertyListResult list =
        platform::readPropertyList(contents.data, mostBytesOfQueue);
    if (list.value.userType() != QMetaType::QVariantList) {
        const QString keptPath = platform::keepDamagedFileAside(path_);
        mayWrite_ = !keptPath.isEmpty();
        keepsIntermediateFiles_ = true;
        surroundings_.damaged(keptPath);
        return {};
    }
    std::vector<QVariantMap> archives;
    for (const QVariant& element : list.value.toList()) {
        archives.push_back(element.toMap());
    }
    return archives;
}

void QueueArchive::write() {
    if (isQuitting_) {
        return;
    }
    wantsToBeWritten_ = true;
    if (writer_->isBusy()) {
        return;
    }
    if (!rest_.isActive()) {
        save();
    } else if (isUrgent_) {
        rest();
    }
}

void QueueArchive::writeIfBegun(const engine::DQDownload& download) {
    const engine::UserSettings& settings = download.userSettings();
    if (!settings.contains(engine::keys::responseURL)) {
        return;
    }
    const auto known = cache_.find(&download);
    if (known == cache_.end() || known->second.revision != settings.revision()) {
        isUrgent_ = isUrgent_ || !leadsToData(download);
        write();
    }
}

/// What has come whole at once is done before it could be saved.
bool QueueArchive::leadsToData(const engine::DQDownload& download) const {
    if (download.downloadCompletionFraction() >= 1) {
        return true;
    }
    const auto known = cache_.find(&download);
    return known != cache_.end() && known->second.hasBegun &&
           known->second.parts == download.userSettings().value(engine::keys::accelerationWorkers);
}

void QueueArchive::didWrite(const std::optional<platform::Error>& error) {
    if (error && !std::exchange(isFailureTold_, false)) {
        platform::log(u"cannot write the queue: %1"_s.arg(error->text), platform::LogLevel::Error);
        surroundings_.notWritten(*error);
    }
    written_ = surroundings_.loop.clock().monotonic();
    rest();
    if (writer_->isBusy()) {
        return;
    }
    for (const Saved& saved : std::exchange(beingSaved_, {})) {
        saved(!error);
    }
}

void QueueArchive::whenSaved(Saved saved) {
    if (!mayWrite_) {
        saved(false);
        return;
    }
    waiting_.push_back(std::move(saved));
    isUrgent_ = true;  // Somebody waits for the answer.
    write();
}

void QueueArchive::rest() {
    const platform::Seconds took = written_ - handedOver_;
    const platform::Seconds length =
        isUrgent_ ? std::min(took * restPerWriteIfUrgent, longestRest)
                  : std::clamp(took * restPerWrite, shortestRest, longestRest);
    rest_.start(std::max(written_ + length - surroundings_.loop.clock().monotonic(), 0.0),
                [this] { save(); });
}

void QueueArchive::save() {
    if (!wantsToBeWritten_ || writer_->isBusy()) {
        return;
    }
    if (prepare()) {
        handOver(elements());
    } else {
        rest_.start(0, [this] { save(); });
    }
}

bool QueueArchive::prepare() {
    constexpr platform::Seconds turn = 0.004;
    const platform::Clock& clock = surroundings_.loop.clock();
    const platform::Seconds end = clock.monotonic() + turn;
    const engine::Downloads& downloads = surroundings_.queue.downloads();
    const Form current = form();
    while (prepared_ < downloads.size()) {
        engine::DQDownload& download = *downloads[prepared_++];
        if (isSaved(download)) {
            elementOf(download, !goesOn(download), current);
        }
        if (clock.monotonic() >= end) {
            return false;
        }
    }
    prepared_ = 0;
    return true;
}

void QueueArchive::finish() {
    if (wantsToBeWritten_) {
        handOver(elements());
    }
    writer_->finish();
}

void QueueArchive::handOver(Elements elements) {
    prepared_ = 0;
    wantsToBeWritten_ = isUrgent_ = false;
    handedOver_ = surroundings_.loop.clock().monotonic();
    if (mayWrite_) {
        std::move(waiting_.begin(), waiting_.end(), std::back_inserter(beingSaved_));
        waiting_.clear();
        writer_->write(std::move(elements));
    }
}

/// A finished download does not survive a restart, nor does one on its way out.
bool QueueArchive::isSaved(const engine::DQDownload& download) const {
    return download.status() != engine::DQDownloadStatusDone && !download.isBeingRemoved() &&
           !surroundings_.isLeaving(download) && !download.comparisonURLString().isEmpty();
}

/// Whether it is to go on by itself at the next start. What comes to be saved after everything was
/// paused for the end does not make that the user's own doing.
bool QueueArchive::goesOn(const engine::DQDownload& download) {
    if (isActive(download) || download.autoResumeAfterSleep()) {
        pausedForEnd_.erase(&download);
        return true;
    }
    return download.status() == engine::DQDownloadStatusPaused && pausedForEnd_.contains(&download);
}

QueueArchive::Elements QueueArchive::elements() {
    forgetRemovedDownloads();
    Elements elements;
    elements.reserve(surroundings_.queue.downloads().size());
    const Form current = form();
    for (const engine::DownloadPtr& download : surroundings_.queue.downloads()) {
        if (isSaved(*download)) {
            const QByteArray& element = elementOf(*download, !goesOn(*download), current);
            if (!element.isEmpty()) {
                elements.push_back(element);
            }
        }
    }
    for (const QVariant& removed : surroundings_.removed()) {
        elements.push_back(platform::propertyListElement(removed));
    }
    return elements;
}

QueueArchive::Form QueueArchive::form() const {
    return {surroundings_.defaults.get(engine::settings::storeMetadataLocally),
            surroundings_.defaults.get(engine::settings::privateDownloading)};
}

const QByteArray& QueueArchive::elementOf(engine::DQDownload& download, bool paused,
                                          const Form& form) {
    Cached& cached = cache_[&download];
    const auto isCurrent = [&] {
        return !cached.element.isEmpty() && cached.paused == paused && cached.form == form &&
               cached.revision == download.userSettings().revision();
    };
    if (!isCurrent()) {
        const QVariantMap archive =
            download.userSettingsArchiveWithPausedStatus(paused, form.storesMetadata);
        cached = {download.userSettings().revision(),
                  archive.isEmpty() ? QByteArray() : platform::propertyListElement(archive),
                  archive.value(engine::keys::accelerationWorkers),
                  paused,
                  form,
                  archive.contains(engine::keys::responseURL)};
        if (cached.element.isEmpty() && !archive.isEmpty()) {
            platform::log(u"cannot be kept over a restart: %1"_s.arg(download.description()),
                          platform::LogLevel::Error);
        }
    }
    return cached.element;
}

void QueueArchive::forgetRemovedDownloads() {
    const engine::Downloads& downloads = surroundings_.queue.downloads();
    if (!pausedForEnd_.empty()) {
        decltype(pausedForEnd_) present;
        for (const engine::DownloadPtr& download : downloads) {
            if (pausedForEnd_.contains(download.get())) {
                present.insert(download.get());
            }
        }
        pausedForEnd_.swap(present);
    }
    if (cache_.size() <= downloads.size()) {
        return;
    }
    decltype(cache_) kept;
    for (const engine::DownloadPtr& download : downloads) {
        if (auto node = cache_.extract(download.get())) {
            kept.insert(std::move(node));
        }
    }
    cache_.swap(kept);
}

/// One walk over the queue to save it for good.
class QueueArchive::QuitPass {
public:
    explicit QuitPass(QueueArchive& archive)
        : archive_(archive),
          asks_(archive.surroundings_.defaults.get(settings::quitProcedure) < 1),
          dropsDuplicates_(
              archive.surroundings_.defaults.get(settings::removeInactiveDuplicatesOnQuit)) {}

    /// False: the user does not want to quit.
    [[nodiscard]] bool run() {
        engine::DownloadQueue& queue = archive_.surroundings_.queue;
        // The question lets the main loop go on.
        if (asks_ && pausesAny(queue.downloads()) && !archive_.confirmQuit()) {
            return false;
        }
        // What is paused here is saved as going on, and at no moment as paused.
        archive_.isQuitting_ = true;
        const auto isOver = qScopeGuard([this] { archive_.isQuitting_ = false; });
        const engine::DownloadQueue::Batch batch(queue);
        // Pausing reports to the queue's owner.
        const engine::Downloads downloads = queue.downloads();
        for (const engine::DownloadPtr& download : downloads) {
            add(*download);
        }
        return true;
    }

    [[nodiscard]] Elements elements() const {
        Elements elements;
        std::copy_if(elements_.begin(), elements_.end(), std::back_inserter(elements),
                     [](const QByteArray& element) { return !element.isEmpty(); });
        return elements;
    }

private:
    [[nodiscard]] bool pausesAny(const engine::Downloads& downloads) const {
        return std::any_of(downloads.begin(), downloads.end(), [this](const auto& download) {
            return archive_.isSaved(*download) && isActive(*download);
        });
    }

    void add(engine::DQDownload& download) {
        if (!archive_.isSaved(download)) {
            return;
        }
        const QString address = download.comparisonURLString();
        dropTwinOf(address);
        const engine::DQDownloadStatus status = download.status();
        const bool goesOnLater = archive_.goesOn(download);
        if (isActive(download)) {
            download.pause();
            archive_.pausedForEnd_.insert(&download);
        }
        const QByteArray element = archive_.elementOf(download, !goesOnLater, archive_.form());
        if (!element.isEmpty()) {
            const bool hasBegun = download.userSettings().contains(engine::keys::responseURL);
            if (status > engine::DQDownloadStatusDownloading || !hasBegun) {
                seen_[address] = elements_.size();
            }
            elements_.push_back(element);
        }
    }

    void dropTwinOf(const QString& address) {
        const auto twin = seen_.constFind(address);
        if (dropsDuplicates_ && twin != seen_.cend()) {
            platform::log(links::filledFormat(u"removing inactive duplicate: %@"_s, {address}));
            elements_[*twin].clear();
            seen_.erase(twin);
        }
    }

    QueueArchive& archive_;
    const bool asks_;
    const bool dropsDuplicates_;
    Elements elements_;                 ///< Empty: dropped.
    QHash<QString, std::size_t> seen_;  ///< Address to the index of its last inactive element.
};

bool QueueArchive::writeBeforeQuitting() {
    QuitPass pass(*this);
    if (!pass.run()) {
        return false;
    }
    wantsToBeWritten_ = false;
    const Elements elements = pass.elements();
    const bool isRemoved = elements.empty() && !keepsIntermediateFiles_;
    if (!isRemoved) {
        handOver(elements);
    }
    std::optional<platform::Error> error = writer_->finish();
    if (isRemoved) {
        error = engine::removeIntermediateFiles(surroundings_.queue.context().environment);
    }
    if (error) {
        isFailureTold_ = !isRemoved;
        platform::log(
            u"cannot %1 the queue: %2"_s.arg(
                isRemoved ? QLatin1StringView("remove") : QLatin1StringView("write"), error->text),
            platform::LogLevel::Error);
        surroundings_.notSavedAtQuit(*error, isRemoved);
    }
    return true;
}

bool QueueArchive::confirmQuit() {
    _isShowingQuitWhileDownloadingAlert = true;
    const bool quits = surroundings_.questions.confirm(quitAlert());
    _isShowingQuitWhileDownloadingAlert = false;
    return quits;
}

}  // namespace app
