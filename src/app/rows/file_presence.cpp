#include "app/rows/file_presence.h"

#include <utility>

#include "engine/context.h"
#include "engine/lifecycle/download.h"
#include "platform/files/disks.h"
#include "platform/files/files.h"

namespace app {

namespace {

constexpr platform::Seconds lookInterval = 2;

}  // namespace

FilePresence::FilePresence(const engine::Context& context,
                           std::function<void(engine::DQDownload&)> changed)
    : context_(context),
      changed_(std::move(changed)),
      self_(std::make_shared<FilePresence*>(this)) {}

FilePresence::~FilePresence() = default;

bool FilePresence::isThere(engine::DQDownload& download) {
    const QString path = download.path();
    if (path.isEmpty()) {
        return false;
    }
    Known& known = known_[&download];
    const bool isOther = known.path != path;
    if (isOther) {
        known = {path};
    }
    if (!known.isBeingLookedFor &&
        (isOther || context_.monotonicNow() - known.lookedAt >= lookInterval)) {
        look(download, known);
    }
    return known.isThere;
}

void FilePresence::look(engine::DQDownload& download, Known& known) {
    known.isBeingLookedFor = true;
    const auto isThere = std::make_shared<bool>(false);
    context_.disks.elsewhere().run(
        [path = known.path, isThere] { *isThere = platform::pathExists(path); },
        [weak = std::weak_ptr(self_), weakDownload = download.weak_from_this(), path = known.path,
         isThere] {
            const auto self = weak.lock();
            const auto kept = weakDownload.lock();
            if (self && kept) {
                (*self)->didLook(*kept, path, *isThere);
            }
        });
}

/// One that is not where it was may have been moved: only then is it searched for, once.
void FilePresence::didLook(engine::DQDownload& download, const QString& path, bool isThere) {
    const auto found = known_.find(&download);
    if (found == known_.end() || found->second.path != path) {
        return;
    }
    Known& known = found->second;
    known.isBeingLookedFor = false;
    known.lookedAt = context_.monotonicNow();
    const bool wasThere = known.isThere;
    if (!isThere && wasThere) {
        isThere = download.fileExists();
    }
    known.isThere = isThere;
    known.path = download.path();
    if (isThere != wasThere || known.path != path) {
        changed_(download);
    }
}

}  // namespace app
