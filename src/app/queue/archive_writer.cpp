#include "app/queue/archive_writer.h"

#include <cerrno>
#include <utility>

#include "platform/files/files.h"
#include "platform/files/property_list.h"

namespace app {

ArchiveWriter::ArchiveWriter(QString path, platform::RunLoop& loop, Written written)
    : path_(std::move(path)),
      loop_(loop),
      written_(std::make_shared<Written>(std::move(written))),
      thread_([this] { run(); }) {}

ArchiveWriter::~ArchiveWriter() {
    {
        const std::lock_guard guard(lock_);
        ends_ = true;
    }
    changed_.notify_all();
    thread_.join();
    *written_ = {};
}

void ArchiveWriter::write(QVariantList archive) {
    write([archive = std::move(archive)] { return archive; });
}

void ArchiveWriter::write(Make make) {
    {
        const std::lock_guard guard(lock_);
        waiting_ = std::move(make);
    }
    changed_.notify_all();
}

bool ArchiveWriter::isBusy() const {
    const std::lock_guard guard(lock_);
    return isWriting_ || waiting_;
}

std::optional<platform::Error> ArchiveWriter::finish() {
    std::unique_lock guard(lock_);
    changed_.wait(guard, [this] { return !isWriting_ && !waiting_; });
    return lastError_;
}

void ArchiveWriter::run() {
    std::unique_lock guard(lock_);
    while (true) {
        changed_.wait(guard, [this] { return waiting_ || ends_; });
        if (!waiting_) {
            return;
        }
        const Make make = std::exchange(waiting_, {});
        isWriting_ = true;
        guard.unlock();
        std::optional<platform::Error> error = writeFile(make());
        guard.lock();
        isWriting_ = false;
        lastError_ = std::move(error);
        loop_.post([written = written_, result = lastError_] {
            if (*written) {
                (*written)(result);
            }
        });
        changed_.notify_all();
    }
}

std::optional<platform::Error> ArchiveWriter::writeFile(const QVariantList& archive) const {
    const QByteArray data = platform::writePropertyList(archive);
    if (data.isEmpty()) {
        return platform::posixError(EINVAL);
    }
    return platform::writeFileAtomically(path_, data);
}

}  // namespace app
