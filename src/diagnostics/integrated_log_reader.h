#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "diagnostics/log_rows.h"
#include "diagnostics/log_source.h"
#include "platform/base/thread_pool.h"
#include "platform/base/timer.h"
#include "platform/base/user_defaults.h"

namespace diagnostics {

/// What a program may want otherwise; each may be null.
struct ILRIntegratedLogReaderDelegate {
    std::function<int()> filteringLevel;  ///< 0 default, 1 info, 2 debug.
    std::function<QString()> filteringPredicate;
    std::function<bool()> isDebugLoggingEnabled;
    std::function<void(bool enabled)> setDebugLoggingEnabled;
};

/// What a window is told, on the main thread; each may be null.
struct LogReaderDisplay {
    std::function<void()> updateRows;         ///< The entries, or how they are shown.
    std::function<void()> updateState;        ///< Whether the past is being read.
    std::function<void()> updateDebugSwitch;  ///< Of "debug logging".
};

/// Reads the messages of this program, the past and what arrives live. Main thread, except where
/// it says so.
class ILRIntegratedLogReader {
public:
    /// All outlives the reader.
    struct Surroundings {
        platform::UserDefaults& defaults;
        platform::RunLoop& loop;  ///< The main thread's.
        LogSource& source;
        QString programName;  ///< As it stands in the paths of its parts.
    };

    explicit ILRIntegratedLogReader(const Surroundings& surroundings);
    ~ILRIntegratedLogReader();
    ILRIntegratedLogReader(const ILRIntegratedLogReader&) = delete;
    ILRIntegratedLogReader& operator=(const ILRIntegratedLogReader&) = delete;

    [[nodiscard]] bool canDisplayLog() const;
    void setDisplay(LogReaderDisplay display);
    void setDelegate(ILRIntegratedLogReaderDelegate delegate);
    void setDebugLoggingUserDefaultName(const QString& name);
    void setHiddenPrefixes(const QStringList& prefixes);

    /// Begins to read, or begins anew if what is wanted has changed. False: there is no tool.
    bool displayLog();
    /// Forgets everything and reads no more, as when the window closes.
    void close();
    void findEarlierResults();
    /// Empties the view, or stops reading the past.
    void clear();
    /// An array of dictionaries of strings and numbers. False: there is nothing to save, or it
    /// cannot be written; the log says which.
    [[nodiscard]] bool save(const QString& path);

    [[nodiscard]] bool showsSender() const;
    void toggleMessageSender();
    [[nodiscard]] bool coalesces() const;
    void toggleMessageCoalescing();
    [[nodiscard]] bool isDebugLoggingEnabled() const;
    [[nodiscard]] bool canChangeDebugLogging() const;
    void toggleDebugLogging();

    /// As they stand now.
    [[nodiscard]] std::vector<LogRow> rows() const;
    [[nodiscard]] LogWording wording() const;
    [[nodiscard]] bool hasLogEntries() const;
    [[nodiscard]] bool isReadingArchive() const { return isReadingArchive_; }
    /// How far back the view goes: -1 cleared, 0 one hour, otherwise days.
    [[nodiscard]] int numberOfDays() const { return _numberOfDays; }
    /// When the view was last begun or extended; nothing: it is closed.
    [[nodiscard]] std::optional<std::int64_t> updateTime() const { return _updateTime; }

private:
    /// Its identity marks a generation: whatever was begun for another one has nothing to say.
    using Generation = std::shared_ptr<LogEntryList>;
    struct Arguments {
        QStringList live, archive;
    };
    struct ArchiveRead {
        Generation entries;
        QStringList arguments;
        /// The past is read up to here.
        std::optional<std::int64_t> limit;
        bool increases = false;
    };

    void updateLogAfterIncreasingNumberOfDays(bool increase);
    [[nodiscard]] Arguments arguments() const;
    [[nodiscard]] QString defaultPredicate() const;
    void reset();
    void startLiveStream(const QStringList& arguments, const Generation& entries);
    bool addLive(const Generation& generation, LogEntries batch);
    void readArchive(const ArchiveRead& read);
    bool addArchived(const ArchiveRead& read, bool& keepsGoing, LogEntries batch);
    void endArchiveRead(const ArchiveRead& read);
    void fillGapLater(const ArchiveRead& read);
    void fillGap(const ArchiveRead& read);
    [[nodiscard]] bool isCurrent(const Generation& entries) const;
    void addMissing(const Generation& generation, const LogEntryList& found);
    void showRows();
    void updateRowsSoon();
    void observe(const QString& key);

    Surroundings around_;
    LogReaderDisplay display_;
    ILRIntegratedLogReaderDelegate _delegate;
    QString _debugLoggingUserDefaultName;
    QStringList _hiddenPrefixes;
    QString _filteringPredicate;
    int _filteringLevel = 0;
    int _numberOfDays = 0;
    std::optional<std::int64_t> _updateTime;
    bool isReadingArchive_ = false;
    platform::Timer fillingGap_;

    mutable std::mutex lock_;  ///< Guards all below, which the streams' threads touch as well.
    Generation _logEntries = std::make_shared<LogEntryList>();
    std::size_t _archiveInsertionIndex = noInsertionIndex;
    std::optional<std::int64_t> _firstLiveStreamTimestamp, _lastArchiveStreamTimestamp;
    bool isUpdatePosted_ = false;

    /// Empty when the reader has died: what was posted to the main thread looks here first.
    std::shared_ptr<ILRIntegratedLogReader*> self_ =
        std::make_shared<ILRIntegratedLogReader*>(this);
    // The last: what they run touches all above.
    std::unique_ptr<LogSource::Stream> _liveStream;
    platform::ThreadPool archiveReads_{2};
    platform::Observation observation_;
};

}  // namespace diagnostics
