#include "engine/paths/metadata_file.h"

#include <utility>

#include "links/paths/path_components.h"
#include "platform/base/log.h"
#include "platform/files/disks.h"
#include "platform/files/files.h"
#include "platform/files/property_list.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

QString pathIn(const QString& container) {
    return links::stringByAppendingPathComponent(container, u"Archive.orlopinfo"_s);
}

void logFailure(const QString& container, const std::optional<platform::Error>& error) {
    if (error)
        platform::log(u"cannot write metadata: %1 (%2)"_s.arg(pathIn(container), error->text));
}

}  // namespace

void MetadataFile::writeAtOnce(const QString& container, const QVariantMap& archive) {
    logFailure(container,
               platform::writeFileAtOnce(pathIn(container), platform::writePropertyList(archive)));
}

void MetadataFile::write(platform::Disks& disks, const QString& container,
                         const QVariantMap& archive) {
    if (!isOutdated_.exchange(false) && container == written_.container &&
        archive == written_.archive)
        return;
    written_ = {container, archive};
    const std::scoped_lock guard(lock_);
    next_ = written_;
    hasNext_ = true;
    if (!std::exchange(isWriting_, true))
        disks.holding(container).run([self = shared_from_this()] { self->work(); });
}

void MetadataFile::discard(std::function<void()> remove) {
    written_ = {};
    {
        const std::scoped_lock guard(lock_);
        hasNext_ = false;
        if (isWriting_) {
            removals_.push_back(std::move(remove));
            return;
        }
    }
    remove();
}

void MetadataFile::settle() {
    std::unique_lock guard(lock_);
    isOutdated_ = isOutdated_ || hasNext_;
    hasNext_ = false;
    isIdle_.wait(guard, [this] { return !isWriting_; });
}

/// False: there is none, and the work is over.
bool MetadataFile::takeNext(Version& next) {
    std::vector<std::function<void()>> removals;
    do {
        for (const auto& remove : std::exchange(removals, {}))
            remove();
        const std::scoped_lock guard(lock_);
        removals.swap(removals_);
        if (removals.empty() && std::exchange(hasNext_, false)) {
            next = std::exchange(next_, {});
            return true;
        }
        isWriting_ = !removals.empty();
    } while (!removals.empty());
    isIdle_.notify_all();
    return false;
}

void MetadataFile::work() {
    for (Version version; takeNext(version);) {
        const auto error = platform::writeFileAtomically(
            pathIn(version.container), platform::writePropertyList(version.archive));
        isOutdated_ = isOutdated_ || error.has_value();
        logFailure(version.container, error);
    }
}

}  // namespace engine
