#pragma once

#include <sys/types.h>

#include <QByteArray>
#include <utility>

namespace platform {

/// An open file descriptor that is closed with the object. Negative: none.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    ~Descriptor() { close(); }
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }

    [[nodiscard]] int get() const { return number_; }
    [[nodiscard]] bool isOpen() const { return number_ >= 0; }
    void close();

private:
    int number_;
};

/// Of a new file that is the user's; the process's mask takes away what he keeps from others.
inline constexpr mode_t newFileMode = 0666;

/// The file of that name, not one that a link of that name leads to (O_NOFOLLOW). Also where the
/// file system refuses the flag for files that are no links, as the documents of a sandbox's portal
/// do. Not open: errno says why; ELOOP for a link.
[[nodiscard]] Descriptor openWithoutFollowing(const QByteArray& path, int flags);

/// Writes all of it, however often the system stops short. False: errno says why.
[[nodiscard]] bool writeFully(const Descriptor& file, const char* bytes, qint64 count);

/// A new file of mode 0600 beside `path`, under a hidden name that nobody else has. It is removed
/// with the object unless it has been placed.
class TemporaryFile {
public:
    /// Look at `isOpen`; false: errno says why.
    explicit TemporaryFile(const QByteArray& path);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    [[nodiscard]] bool isOpen() const { return file_.isOpen(); }
    [[nodiscard]] const Descriptor& file() const { return file_; }
    [[nodiscard]] const QByteArray& path() const { return path_; }
    /// Deletes those that killed programs of this user have left in a folder, in which nobody else
    /// is making any at the moment.
    static void removeStrays(const QByteArray& folder);
    /// It has been renamed and is not ours to remove any more.
    void setPlaced() { path_.clear(); }

private:
    QByteArray path_;
    Descriptor file_;
};

/// Makes the names in the folder of `path` durable. File systems that cannot are left in peace.
void syncFolderOf(const QByteArray& path);

}  // namespace platform
