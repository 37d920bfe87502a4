#pragma once

#include <QList>
#include <memory>

#include "app/history/history_entry.h"
#include "platform/base/run_loop.h"

namespace platform {
class Disks;
}

namespace app {

class ArchiveWriter;

/// The history on disk: a property list of dictionaries, oldest first. It is the old or the new one
/// at every moment. Main thread; writing goes on elsewhere.
class HistoryFile {
public:
    HistoryFile(QString path, platform::Disks& disks, platform::RunLoop& loop);
    /// Waits for what is being written.
    ~HistoryFile();
    HistoryFile(const HistoryFile&) = delete;
    HistoryFile& operator=(const HistoryFile&) = delete;

    /// Empty if there is none. A file that cannot be understood is kept aside; if that fails it is
    /// left as it is, and nothing is written in this run.
    [[nodiscard]] QList<HistoryEntry> read();
    /// No entries: removes the file.
    void write(const QList<HistoryEntry>& entries);
    /// Waits until what was given last is on disk.
    void finish();

private:
    const QString path_;
    std::unique_ptr<ArchiveWriter> writer_;
    bool mayWrite_ = true;
};

}  // namespace app
