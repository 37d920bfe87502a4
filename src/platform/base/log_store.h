#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

#include "platform/files/descriptor.h"

namespace platform {

struct LogStoreBounds {
    qint64 segmentBytes = 1 << 20;
    qint64 totalBytes = 16 << 20;
    int days = 30;
};

/// One file of the store.
struct LogSegment {
    qint64 number = 0;
    QByteArray path;
    qint64 bytes = 0;
    qint64 changed = 0;  ///< Seconds since 1970.
};

/// $XDG_STATE_HOME/Orlop/Log
[[nodiscard]] QString logStoreFolder();
/// What there is of the store in `folder`, in the order of its lines.
[[nodiscard]] std::vector<LogSegment> logSegments(const QString& folder);

/// Appends to the segments `Log.NNNNNNNN.jsonl` in a folder. Several processes may append to one
/// store: each line is one write at the end of the newest segment, a full one is followed by the
/// next number, as is that of another day, and whoever begins a segment removes the oldest. A crash
/// can cut only the line that is just being written, and the next line does not begin behind it.
///
/// One thread at a time; waits for the disk.
class LogStore {
public:
    explicit LogStore(const QString& folder, const LogStoreBounds& bounds = {});

    /// `line` ends with a line feed. False: it could not be written whole.
    bool append(const QByteArray& line);

private:
    bool openFor(const QByteArray& line);
    bool openSegment(qint64 number);
    /// Whether the next line belongs into a segment of its own.
    [[nodiscard]] bool isOver(const QByteArray& line, qint64 size) const;
    [[nodiscard]] bool hasSuccessor() const;
    void removeOld() const;
    [[nodiscard]] QByteArray pathOf(qint64 number) const;

    const QString folder_;
    const LogStoreBounds bounds_;
    Descriptor file_;
    qint64 number_ = 0;
    QByteArray day_;   ///< Of the first line of the open segment.
    qint64 end_ = -1;  ///< Its size behind our own last line.
};

}  // namespace platform
