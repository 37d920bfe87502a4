#include "app/queue/archive_writer.h"

#include <QDir>
#include <QFileInfo>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

#include "platform/base/log.h"
#include "platform/files/disks.h"
#include "platform/files/files.h"
#include "platform/files/property_list.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

struct ArchiveWriter::State {
    State(QString target, platform::RunLoop& mainLoop, Written whenWritten)
        : path(std::move(target)),
          loop(mainLoop),
          written(std::make_shared<Written>(std::move(whenWritten))) {}

    void work();
    [[nodiscard]] std::optional<platform::Error> writeFile(Elements elements) const;

    const QString path;
    platform::RunLoop& loop;
    /// Shared with the calls posted, which may come when the writer is gone.
    std::shared_ptr<Written> written;

    std::mutex lock;  ///< Guards all that follows.
    std::condition_variable isIdle;
    Make waiting;  ///< Empty: nothing.
    std::optional<platform::Error> lastError;
    bool isWriting = false;
    bool isGivenUp = false;
};

/// A tool that cleans up may have taken the folder of a program that runs.
std::optional<platform::Error> ArchiveWriter::State::writeFile(Elements elements) const {
    const std::vector<QByteArray> data = platform::propertyListOfElements(std::move(elements));
    const std::optional<platform::Error> error = platform::writeFileAtomically(path, data);
    const bool isFolderGone = error && error->is(platform::posixErrorDomain, ENOENT);
    return isFolderGone && QDir().mkpath(QFileInfo(path).path())
               ? platform::writeFileAtomically(path, data)
               : error;
}

/// Whoever hears of the last writing finds that nothing is being written any more.
void ArchiveWriter::State::work() {
    std::unique_lock guard(lock);
    while (waiting) {
        Make make = std::exchange(waiting, {});
        guard.unlock();
        std::optional<platform::Error> error = writeFile(make());
        guard.lock();
        lastError = error;
        isWriting = static_cast<bool>(waiting);
        loop.post([called = written, result = std::move(error)] {
            if (*called) {
                (*called)(result);
            }
        });
    }
    isIdle.notify_all();
}

ArchiveWriter::ArchiveWriter(QString path, platform::Disks& disks, platform::RunLoop& loop,
                             Written written)
    : disk_(disks.holding(path)),
      state_(std::make_shared<State>(std::move(path), loop, std::move(written))) {}

ArchiveWriter::~ArchiveWriter() {
    finish();
    *state_->written = {};
}

void ArchiveWriter::write(Elements elements) {
    write([elements = std::move(elements)]() mutable { return std::move(elements); });
}

void ArchiveWriter::write(Make make) {
    {
        const std::lock_guard guard(state_->lock);
        state_->waiting = std::move(make);
        if (std::exchange(state_->isWriting, true)) {
            return;
        }
    }
    disk_.run([state = state_] { state->work(); });
}

bool ArchiveWriter::isBusy() const {
    const std::lock_guard guard(state_->lock);
    return state_->isWriting;
}

std::optional<platform::Error> ArchiveWriter::finish() {
    constexpr std::chrono::seconds patience(5);
    std::unique_lock guard(state_->lock);
    if (state_->isGivenUp) {
        return platform::posixError(ETIMEDOUT);
    }
    if (!state_->isIdle.wait_for(guard, patience, [this] { return !state_->isWriting; })) {
        state_->isGivenUp = true;
        platform::log(u"the disk does not answer; not written: %1"_s.arg(state_->path),
                      platform::LogLevel::Error);
        return platform::posixError(ETIMEDOUT);
    }
    return state_->lastError;
}

}  // namespace app
