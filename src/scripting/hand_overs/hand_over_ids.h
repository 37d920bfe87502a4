#pragma once

#include <QHash>
#include <QString>
#include <functional>
#include <memory>
#include <vector>

#include "app/queue/archive_writer.h"
#include "platform/base/run_loop.h"

namespace scripting {

/// The ids of hand-overs, remembered for a day and over restarts, so that what comes again makes
/// nothing new. Main thread.
class HandOverIds {
public:
    /// `disks` and the loop outlive it. Reads the file.
    HandOverIds(const QString& path, platform::Disks& disks, platform::RunLoop& loop);
    ~HandOverIds();
    HandOverIds(const HandOverIds&) = delete;
    HandOverIds& operator=(const HandOverIds&) = delete;

    enum class State {
        Unknown,
        Taken,
        /// Its sender has taken it back, before or after it came.
        Withdrawn,
    };
    [[nodiscard]] State state(const QString& id) const;
    /// Remembered from now on, on disk once `whenWritten` says so. The oldest go when they are too
    /// many.
    void set(const QString& id, State state);
    /// Calls `written` when all is on disk that was set so far, or with false if it cannot be.
    void whenWritten(std::function<void(bool isOnDisk)> written);

private:
    struct Entry {
        State state = State::Unknown;
        qint64 time = 0;  ///< Seconds since 1970.
    };
    using Written = std::function<void(bool)>;

    void read(const QString& path);
    void forgetOld();
    void write();
    void didWrite(bool isOnDisk);
    [[nodiscard]] qint64 now() const;

    platform::RunLoop& loop_;
    QHash<QString, Entry> entries_;
    std::vector<Written> waiting_, beingWritten_;
    bool mayWrite_ = true;
    app::ArchiveWriter writer_;
};

}  // namespace scripting
