#include "app/queue/archive_writer.h"

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

    /// Empty: there is nothing to write any more, and the work is over.
    [[nodiscard]] Make takeNext();
    void write(const QVariantList& archive);
    static void work(const std::shared_ptr<State>& self);

    const QString path;
    platform::RunLoop& loop;
    /// Shared with the calls posted, which may come when the writer is gone.
    std::shared_ptr<Written> written;

    std::mutex lock;  ///< Guards all that follows.
    std::condition_variable isIdle;
    Make waiting;  ///< Empty: nothing.
    std::optional<platform::Error> lastError;
    bool isWriting = false;
};

ArchiveWriter::Make ArchiveWriter::State::takeNext() {
    const std::lock_guard guard(lock);
    Make next = std::exchange(waiting, {});
    if (!next) {
        isWriting = false;
        isIdle.notify_all();
    }
    return next;
}

void ArchiveWriter::State::write(const QVariantList& archive) {
    const QByteArray data = platform::writePropertyList(archive);
    std::optional<platform::Error> error =
        data.isEmpty() ? platform::posixError(EINVAL) : platform::writeFileAtomically(path, data);
    {
        const std::lock_guard guard(lock);
        lastError = error;
    }
    loop.post([called = written, result = std::move(error)] {
        if (*called) {
            (*called)(result);
        }
    });
}

void ArchiveWriter::State::work(const std::shared_ptr<State>& self) {
    while (const Make make = self->takeNext()) {
        self->write(make());
    }
}

ArchiveWriter::ArchiveWriter(QString path, platform::Disks& disks, platform::RunLoop& loop,
                             Written written)
    : disks_(disks), state_(std::make_shared<State>(std::move(path), loop, std::move(written))) {}

ArchiveWriter::~ArchiveWriter() {
    finish();
    *state_->written = {};
}

void ArchiveWriter::write(QVariantList archive) {
    write([archive = std::move(archive)] { return archive; });
}

void ArchiveWriter::write(Make make) {
    {
        const std::lock_guard guard(state_->lock);
        state_->waiting = std::move(make);
        if (std::exchange(state_->isWriting, true)) {
            return;
        }
    }
    disks_.holding(state_->path).run([state = state_] { State::work(state); });
}

bool ArchiveWriter::isBusy() const {
    const std::lock_guard guard(state_->lock);
    return state_->isWriting;
}

std::optional<platform::Error> ArchiveWriter::finish() {
    constexpr std::chrono::seconds patience(5);
    std::unique_lock guard(state_->lock);
    if (!state_->isIdle.wait_for(guard, patience, [this] { return !state_->isWriting; })) {
        platform::log(u"the disk does not answer; not written: %1"_s.arg(state_->path),
                      platform::LogLevel::Error);
        return platform::posixError(ETIMEDOUT);
    }
    return state_->lastError;
}

}  // namespace app
