#include "platform/base/defaults_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <array>
#include <cerrno>
#include <utility>

#include "platform/files/files.h"
#include "platform/files/property_list.h"
#include "platform/files/property_list_kinds.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

Descriptor noticeOfChangesIn(const QByteArray& folder) {
    Descriptor notice(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    // No IN_MODIFY: half of what an editor writes is nobody's business.
    constexpr uint32_t events =
        IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_ONLYDIR;
    if (notice.isOpen() && inotify_add_watch(notice.get(), folder.constData(), events) < 0)
        notice.close();
    return notice;
}

}  // namespace

DefaultsFile::DefaultsFile(const QString& folder, const QString& domain)
    : path_(folder + u'/' + domain + u".plist"_s),
      encodedPath_(QFile::encodeName(path_)),
      fileName_(QFile::encodeName(domain + u".plist"_s)),
      lockPath_(QFile::encodeName(folder + u"/."_s + domain + u".lock"_s)) {
    if (!pathExists(folder) && QDir().mkpath(folder))
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

int DefaultsFile::startNotice() {
    notice_ = noticeOfChangesIn(QFile::encodeName(QFileInfo(path_).path()));
    return notice_.get();
}

DefaultsFile::Signature DefaultsFile::signature() const {
    struct stat status {};
    if (stat(encodedPath_.constData(), &status) != 0)
        return {};
    return {status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

DefaultsFile::Reading DefaultsFile::readIfChanged() {
    // Taken before the file is read: a change in between is then seen the next time.
    const Signature now = signature();
    if (known_ == now)
        return {};
    known_ = now;
    const FileContents contents = readFile(path_, largestPropertyList);
    if (contents.error && contents.error->code == ENOENT)
        return {State::Read, {}};
    if (contents.error) {
        if (!std::exchange(isUnreadable_, true))
            logUnreadableFile(path_, *contents.error);
        known_.reset();
        return {State::Unreadable, {}};
    }
    isUnreadable_ = false;
    const PropertyListResult list = readPropertyList(contents.data);
    if (list.value.typeId() == QMetaType::QVariantMap)
        return {State::Read, list.value.toMap()};
    keepDamagedFileAside(path_);
    known_ = signature();
    return {State::Damaged, {}};
}

std::optional<Error> DefaultsFile::write(const QVariantMap& values) {
    std::optional<Error> error = writeFileAtomically(path_, writePropertyList(values));
    if (!error)
        known_ = signature();
    return error;
}

Descriptor DefaultsFile::lock() const {
    Descriptor file(
        open(lockPath_.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
    while (file.isOpen() && flock(file.get(), LOCK_EX) != 0) {
        if (errno != EINTR)
            file.close();
    }
    return file;
}

/// What is in the queue of notices costs less to read than the state of a file in a home folder on
/// a network.
bool DefaultsFile::mayHaveChanged() {
    if (!notice_.isOpen())
        return signature() != known_;
    bool changed = false;
    alignas(inotify_event) std::array<char, 4096> block{};
    for (;;) {
        const ssize_t got = read(notice_.get(), block.data(), block.size());
        if (got <= 0)
            return changed;
        for (ssize_t at = 0; at < got;) {
            const auto* const event = reinterpret_cast<const inotify_event*>(block.data() + at);
            changed = changed || (event->mask & IN_Q_OVERFLOW) != 0 ||
                      (event->len > 0 && fileName_ == event->name);
            at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
    }
}

}  // namespace platform
