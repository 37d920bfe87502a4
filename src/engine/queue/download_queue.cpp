#include "engine/queue/download_queue.h"

#include <QRandomGenerator>
#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/base/run_loop.h"

namespace engine {

namespace {

/// Random, so that it is not given twice, and short, since people type it.
QString newIdentity() {
    constexpr QLatin1StringView letters("abcdefghijklmnopqrstuvwxyz234567");
    constexpr int length = 10;
    QString identity;
    for (int index = 0; index < length; ++index)
        identity += QChar(letters[QRandomGenerator::system()->bounded(letters.size())]);
    return identity;
}

}  // namespace

bool anyDownloadFromCollectionMatchesStatusMask(const Downloads& collection, StatusMask mask) {
    return std::any_of(collection.begin(), collection.end(), [mask](const auto& download) {
        return matchesStatusMask(download->status(), mask);
    });
}

Downloads downloadsFromCollectionMatchingStatusMask(const Downloads& collection, StatusMask mask) {
    Downloads matches;
    std::copy_if(
        collection.begin(), collection.end(), std::back_inserter(matches),
        [mask](const auto& download) { return matchesStatusMask(download->status(), mask); });
    return matches;
}

DownloadQueue::DownloadQueue(const Surroundings& surroundings, QueueOwner& owner)
    : owner_(owner),
      fileAccess_(surroundings.environment),
      throttle_(surroundings.defaults),
      autoResume_(surroundings.defaults),
      context_{
          surroundings.defaults, surroundings.loop, surroundings.disks, surroundings.environment,
          surroundings.rules,    fileAccess_,       throttle_},
      admission_(*this) {}

/// Somebody may still hold a record, whose surroundings are about to go.
DownloadQueue::~DownloadQueue() {
    members_.clear();
    for (const DownloadPtr& download : _downloads) {
        download->abandon();
    }
}

Downloads DownloadQueue::downloadsMatchingStatusMask(StatusMask mask) const {
    return downloadsFromCollectionMatchingStatusMask(_downloads, mask);
}

bool DownloadQueue::contains(const DQDownload& download) const {
    return members_.contains(&download);
}

std::optional<std::size_t> DownloadQueue::indexOf(const DQDownload& download) const {
    if (!contains(download))
        return std::nullopt;
    const auto found =
        std::find_if(_downloads.begin(), _downloads.end(),
                     [&](const auto& candidate) { return candidate.get() == &download; });
    return static_cast<std::size_t>(found - _downloads.begin());
}

DownloadPtr DownloadQueue::born(const platform::Url& url, const Setup& setup) {
    DownloadHost& host = *this;
    auto download = std::make_shared<DQDownload>(context_, host, url);
    if (setup)
        setup(*download);
    if (!download->userSettings().contains(keys::identity))
        download->userSettings().set(keys::identity, newIdentity());
    return download;
}

void DownloadQueue::enter(const DownloadPtr& download, bool addToQueue) {
    members_.insert(download.get());
    tally_.add(*download, download->status());
    membershipDidChange();
    if (addToQueue)
        download->changeStatus(DQDownloadStatusQueued, StatusCause::Added);
}

DownloadPtr DownloadQueue::add(const std::optional<platform::Url>& url, bool addToQueue,
                               const Setup& setup) {
    if (!url || url->isEmpty())
        return nullptr;
    DownloadPtr download = born(*url, setup);
    _downloads.push_back(download);
    enter(download, addToQueue);
    return download;
}

DownloadPtr DownloadQueue::replace(DQDownload& download, const platform::Url& url, bool addToQueue,
                                   const Setup& setup) {
    const std::optional<std::size_t> index = indexOf(download);
    if (!index)
        return nullptr;
    const auto place = _downloads.begin() + static_cast<std::ptrdiff_t>(*index);
    DownloadPtr replacement = born(url, setup);
    const DownloadPtr former = std::exchange(*place, replacement);
    forget(former);
    owner_.downloadWasReplaced(former, replacement);
    enter(replacement, addToQueue);
    return replacement;
}

DownloadPtr DownloadQueue::retry(DQDownload& download, bool addToQueue) {
    // A finished one bears the address of its file.
    const bool isDone = download.status() == DQDownloadStatusDone;
    const auto url = isDone ? platform::Url::parse(download.originalURLString()) : download.URL();
    if (!url || url->isEmpty())
        return nullptr;
    return replace(download, *url, addToQueue, [&](DQDownload& replacement) {
        const UserSettings& settings = download.userSettings();
        replacement.userSettings().set(keys::identity, settings.value(keys::identity));
        if (settings.boolean(keys::keepsName)) {
            replacement.setName(download.name());
            replacement.userSettings().set(keys::keepsName, true);
        }
        // What a browser or a script has handed over cannot be had without its request.
        for (const QString& key :
             {keys::handOver, keys::page, keys::request, keys::unkeptCookies}) {
            if (settings.contains(keys::handOver))
                replacement.userSettings().set(key, settings.value(key));
        }
        // The user may have changed it since, or want the file as it is.
        replacement.userSettings().set(keys::checksum, settings.value(keys::checksum));
        replacement.userSettings().set(keys::speedLimit, settings.value(keys::speedLimit));
        replacement.takeOverPartialData(download);
    });
}

/// The record may be in the middle of an operation that led here.
void DownloadQueue::forget(const DownloadPtr& download) {
    members_.erase(download.get());
    tally_.remove(*download, download->status());
    context_.loop.post([kept = download] {});
    owner_.downloadDidLeave(*download);
}

bool DownloadQueue::remove(DQDownload& download) {
    const std::optional<std::size_t> index = indexOf(download);
    if (!index)
        return false;
    const auto place = _downloads.begin() + static_cast<std::ptrdiff_t>(*index);
    forget(*place);
    _downloads.erase(place);
    membershipDidChange();
    return true;
}

std::size_t DownloadQueue::removeIf(const std::function<bool(DQDownload&)>& matches) {
    const std::size_t count = std::erase_if(_downloads, [&](const DownloadPtr& download) {
        const bool goes = matches(*download);
        if (goes)
            forget(download);
        return goes;
    });
    if (count > 0)
        membershipDidChange();
    return count;
}

void DownloadQueue::putBack(const std::vector<Place>& places,
                            const std::function<bool(const DQDownload&)>& counts) {
    Downloads order;
    order.reserve(_downloads.size() + places.size());
    std::size_t counted = 0;
    auto next = places.begin();
    const auto putDue = [&](bool isEnd) {
        for (; next != places.end() && (isEnd || next->index <= counted); ++next, ++counted)
            order.push_back(next->download);
    };
    for (const DownloadPtr& present : _downloads) {
        if (counts(*present)) {
            putDue(false);
            ++counted;
        }
        order.push_back(present);
    }
    putDue(true);
    _downloads = std::move(order);
    for (const Place& place : places) {
        members_.insert(place.download.get());
        tally_.add(*place.download, place.download->status());
    }
    membershipDidChange();
}

void DownloadQueue::setOrder(Downloads order) {
    Q_ASSERT(order.size() == _downloads.size());
    _downloads = std::move(order);
    membershipDidChange();
}

bool DownloadQueue::move(const Downloads& dragged, qsizetype row, bool inverted) {
    const auto count = static_cast<qsizetype>(_downloads.size());
    std::unordered_set<const DQDownload*> moving;
    Downloads moved;
    for (const DownloadPtr& download : dragged) {
        if (contains(*download) && moving.insert(download.get()).second)
            moved.push_back(download);
    }
    if (moved.empty())
        return false;
    const qsizetype before = std::clamp<qsizetype>(inverted ? count - row : row, 0, count);
    const auto stays = [&](const DownloadPtr& download) {
        return !moving.contains(download.get());
    };
    if (inverted)
        std::reverse(moved.begin(), moved.end());
    Downloads order;
    order.reserve(_downloads.size());
    const auto split = _downloads.begin() + before;
    std::copy_if(_downloads.begin(), split, std::back_inserter(order), stays);
    order.insert(order.end(), moved.begin(), moved.end());
    std::copy_if(split, _downloads.end(), std::back_inserter(order), stays);
    setOrder(std::move(order));
    return true;
}

void DownloadQueue::membershipDidChange() {
    admission_.invalidateQueuedAndDownloadingDownloads();
    hasBatchChanged_ = isInBatch();
    owner_.queueDidChange();
}

void DownloadQueue::endBatch() {
    // What the owner does about it is no part of it.
    if (--batches_ == 0 && std::exchange(hasBatchChanged_, false))
        owner_.batchDidEnd();
}

/// Of a record that has left the queue nobody wants to hear any more.
void DownloadQueue::statusDidChange(const StatusChange& change) {
    if (!contains(change.download))
        return;
    hasBatchChanged_ = isInBatch();
    if (change.before != change.after) {
        tally_.remove(change.download, change.before);
        tally_.add(change.download, change.after);
    }
    admission_.statusDidChange(change);
    if (tally_.count(activeStatuses) == 0)
        fileAccess_.end();
    owner_.statusDidChange(change);
}

void DownloadQueue::downloadDidChange(DQDownload& download) {
    if (contains(download))
        owner_.downloadDidChange(download);
}

void DownloadQueue::downloadWasRemoved(DQDownload& download) {
    if (!contains(download))
        return;
    hasBatchChanged_ = isInBatch();
    owner_.downloadWasRemoved(download);
}

std::optional<platform::Seconds> DownloadQueue::noteFailure() {
    return autoResume_.noteFailure(context_.monotonicNow());
}

void DownloadQueue::serverDidRefuse(const DQDownload& download, const Refusal& refusal) {
    admission_.serverDidRefuse(download, refusal);
}

void DownloadQueue::releaseServer(const DQDownload& download) {
    admission_.releaseServer(download);
}

void DownloadQueue::connectionDidEnd(const DQDownload& download) {
    admission_.connectionDidEnd(download);
}

qint64 DownloadQueue::connectionsFor(const DQDownload& download) {
    return admission_.connectionsFor(download);
}

void DownloadQueue::openURLsOfPage(const std::vector<platform::Url>& urls,
                                   const QStringList& pageChain) {
    owner_.openURLsOfPage(urls, pageChain);
}

void DownloadQueue::volumeIsMissing(DQDownload& download) {
    owner_.volumeIsMissing(download);
}

void DownloadQueue::fileWasNotThrownAway(const QString& path) {
    owner_.fileWasNotThrownAway(path);
}

}  // namespace engine
