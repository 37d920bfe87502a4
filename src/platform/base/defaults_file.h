#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>
#include <optional>

#include "platform/base/error.h"
#include "platform/files/descriptor.h"

namespace platform {

/// The file behind one domain of user defaults, which several programs and people edit.
/// One thread.
class DefaultsFile {
public:
    DefaultsFile(const QString& folder, const QString& domain);

    [[nodiscard]] const QString& path() const { return path_; }

    enum class State { Unchanged, Read, Damaged, Unreadable };
    struct Reading {
        State state = State::Unchanged;
        /// With `Read` only. A missing file reads as empty.
        QVariantMap values;
    };
    /// Reads it, unless it is as this object has last read or written it. A damaged one is moved
    /// aside; one that cannot be read is left alone, and tried again by the next call.
    [[nodiscard]] Reading readIfChanged();

    /// Replaces the file. Hold a `lock` from the last reading until after it.
    [[nodiscard]] std::optional<Error> write(const QVariantMap& values);

    /// Keeps the other programs from writing until it is closed. It is not open if the file system
    /// knows no locks, or the folder is not ours to write.
    [[nodiscard]] Descriptor lock() const;

    /// Whether somebody may have written the file since the last call: looks at the file's state,
    /// or only at the system's notices once these have been asked for.
    [[nodiscard]] bool mayHaveChanged();
    /// Asks the system for notices (which takes a millisecond, so not at the start). Answers a
    /// descriptor that becomes readable when there is one; negative: the system gives none.
    [[nodiscard]] int startNotice();

private:
    /// Tells one state of the file from another. All zero: there is no file.
    struct Signature {
        quint64 inode = 0;
        qint64 size = 0;
        qint64 seconds = 0, nanoseconds = 0;
        bool operator==(const Signature&) const = default;
    };
    [[nodiscard]] Signature signature() const;

    QString path_;
    QByteArray encodedPath_, fileName_, lockPath_;
    Descriptor notice_;
    std::optional<Signature> known_;
    bool isUnreadable_ = false;  ///< Said already.
};

}  // namespace platform
