#include "diagnostics/integrated_log_reader.h"

#include <algorithm>
#include <utility>

#include "diagnostics/settings.h"
#include "platform/base/log.h"
#include "platform/base/log_record.h"
#include "platform/files/files.h"
#include "platform/files/property_list.h"

using namespace Qt::Literals::StringLiterals;

namespace diagnostics {

namespace {

std::shared_ptr<const LogEntry> kept(LogEntry&& entry) {
    return std::make_shared<const LogEntry>(std::move(entry));
}

/// Those without a time come first.
void sortByTime(LogEntryList& entries) {
    const auto isEarlier = [](const auto& a, const auto& b) { return a->time < b->time; };
    if (!std::is_sorted(entries.begin(), entries.end(), isEarlier))
        std::stable_sort(entries.begin(), entries.end(), isEarlier);
}

/// As far as one step back goes.
int increasedDays(int days) {
    constexpr int week = 7;
    if (days < 0)
        return 0;
    if (days == 0)
        return 1;
    return days < week ? week : days + week;
}

/// Off is the absence of the key.
void flip(platform::UserDefaults& defaults, const platform::Setting<bool>& setting) {
    if (defaults.get(setting))
        defaults.removeObject(setting.name());
    else
        defaults.set(setting, true);
}

}  // namespace

ILRIntegratedLogReader::ILRIntegratedLogReader(const Surroundings& surroundings)
    : around_(surroundings),
      fillingGap_(around_.loop),
      observation_(around_.defaults.observe([this](const QString& key) { observe(key); })) {}

ILRIntegratedLogReader::~ILRIntegratedLogReader() {
    display_ = {};
    close();
    *self_ = nullptr;
}

bool ILRIntegratedLogReader::canDisplayLog() const {
    return around_.source.isAvailable();
}

void ILRIntegratedLogReader::setDisplay(LogReaderDisplay display) {
    display_ = std::move(display);
}

void ILRIntegratedLogReader::setDelegate(ILRIntegratedLogReaderDelegate delegate) {
    _delegate = std::move(delegate);
}

void ILRIntegratedLogReader::setDebugLoggingUserDefaultName(const QString& name) {
    _debugLoggingUserDefaultName = name;
}

void ILRIntegratedLogReader::setHiddenPrefixes(const QStringList& prefixes) {
    _hiddenPrefixes = prefixes;
    updateRowsSoon();
}

QString ILRIntegratedLogReader::defaultPredicate() const {
    const QString ours =
        uR"((processImagePath CONTAINS "/%1/") || (senderImagePath CONTAINS "/%1/"))"_s.arg(
            around_.programName);
    return _filteringLevel == 2
               ? ours
               : uR"((eventType == "logEvent") && !(subsystem BEGINSWITH "com.apple") && (%1) && )"
                 uR"(!(senderImagePath ENDSWITH "AggregateDictionary") && )"
                 uR"(!(senderImagePath ENDSWITH "/CFNetwork"))"_s.arg(ours);
}

bool ILRIntegratedLogReader::displayLog() {
    if (!canDisplayLog())
        return false;
    const int level =
        std::exchange(_filteringLevel, _delegate.filteringLevel ? _delegate.filteringLevel() : 0);
    const QString wanted =
        _delegate.filteringPredicate ? _delegate.filteringPredicate() : QString();
    const QString predicate =
        std::exchange(_filteringPredicate, wanted.isEmpty() ? defaultPredicate() : wanted);
    if (level != _filteringLevel || predicate != _filteringPredicate || !_updateTime)
        updateLogAfterIncreasingNumberOfDays(false);
    return true;
}

ILRIntegratedLogReader::Arguments ILRIntegratedLogReader::arguments() const {
    Arguments arguments{{u"stream"_s, u"--style"_s, u"json"_s},
                        {u"show"_s, u"--style"_s, u"json"_s}};
    if (!_filteringPredicate.isEmpty()) {
        arguments.live += {u"--predicate"_s, _filteringPredicate};
        arguments.archive += {u"--predicate"_s, _filteringPredicate};
    }
    arguments.live += u"--level"_s;
    switch (_filteringLevel) {
        case 1:
            arguments.live += u"info"_s;
            arguments.archive += u"--info"_s;
            break;
        case 2:
            arguments.live += u"debug"_s;
            arguments.archive += u"--debug"_s;
            break;
        default:
            arguments.live += u"default"_s;
    }
    arguments.archive += {u"--last"_s, _numberOfDays > 0 ? u"%1d"_s.arg(_numberOfDays) : u"1h"_s};
    return arguments;
}

void ILRIntegratedLogReader::updateLogAfterIncreasingNumberOfDays(bool increase) {
    if (increase)
        _numberOfDays = increasedDays(_numberOfDays);
    const Arguments wanted = arguments();
    _updateTime = platform::logClock();
    ArchiveRead read{nullptr, wanted.archive, std::nullopt, increase};
    bool needsLiveStream = false;
    std::unique_ptr<LogSource::Stream> former;
    {
        const std::lock_guard guard(lock_);
        if (increase && !_logEntries->empty()) {
            read.limit = _logEntries->front()->time;
        } else {
            _logEntries = std::make_shared<LogEntryList>();
            former = std::move(_liveStream);
            _firstLiveStreamTimestamp.reset();
        }
        _lastArchiveStreamTimestamp.reset();
        _archiveInsertionIndex = _numberOfDays < 0 ? noInsertionIndex : 0;
        read.entries = _logEntries;
        needsLiveStream = !_liveStream;
    }
    former.reset();
    fillingGap_.cancel();
    if (needsLiveStream)
        startLiveStream(wanted.live, read.entries);
    isReadingArchive_ = _numberOfDays >= 0;
    if (isReadingArchive_)
        archiveReads_.start([this, read] { readArchive(read); });
    if (display_.updateState)
        display_.updateState();
    updateRowsSoon();
}

void ILRIntegratedLogReader::startLiveStream(const QStringList& arguments,
                                             const Generation& entries) {
    _liveStream = around_.source.start(arguments, [this, entries](LogEntries batch) {
        return addLive(entries, std::move(batch));
    });
}

bool ILRIntegratedLogReader::isCurrent(const Generation& entries) const {
    return entries == _logEntries;
}

bool ILRIntegratedLogReader::addLive(const Generation& generation, LogEntries batch) {
    {
        const std::lock_guard guard(lock_);
        if (!isCurrent(generation) || batch.empty())
            return true;
        if (!_firstLiveStreamTimestamp)
            _firstLiveStreamTimestamp = batch.front().time;
        for (LogEntry& entry : batch)
            generation->push_back(kept(std::move(entry)));
        sortByTime(*generation);
    }
    updateRowsSoon();
    return true;
}

void ILRIntegratedLogReader::readArchive(const ArchiveRead& read) {
    bool keepsGoing = true;
    around_.source.read(read.arguments, [&](LogEntries batch) {
        return addArchived(read, keepsGoing, std::move(batch));
    });
    {
        const std::lock_guard guard(lock_);
        if (!isCurrent(read.entries))
            return;
        sortByTime(*read.entries);
        _archiveInsertionIndex = noInsertionIndex;
    }
    around_.loop.post([self = self_, read] {
        if (*self)
            (*self)->endArchiveRead(read);
    });
}

bool ILRIntegratedLogReader::addArchived(const ArchiveRead& read, bool& keepsGoing,
                                         LogEntries batch) {
    {
        const std::lock_guard guard(lock_);
        if (!keepsGoing || !isCurrent(read.entries))
            return false;
        if (batch.empty())
            return true;
        auto end = batch.end();
        if (read.limit)
            end = std::find_if(batch.begin(), end,
                               [&](const LogEntry& entry) { return entry.time >= read.limit; });
        keepsGoing = end == batch.end();
        LogEntryList added;
        for (auto entry = batch.begin(); entry != end; ++entry)
            added.push_back(kept(std::move(*entry)));
        if (!read.limit)
            _lastArchiveStreamTimestamp = added.back()->time;
        LogEntryList& entries = *read.entries;
        _archiveInsertionIndex = std::min(_archiveInsertionIndex, entries.size());
        entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(_archiveInsertionIndex),
                       added.begin(), added.end());
        _archiveInsertionIndex += added.size();
    }
    updateRowsSoon();
    return keepsGoing;
}

void ILRIntegratedLogReader::endArchiveRead(const ArchiveRead& read) {
    {
        const std::lock_guard guard(lock_);
        if (!isCurrent(read.entries))
            return;
    }
    isReadingArchive_ = false;
    if (display_.updateState)
        display_.updateState();
    showRows();
    if (!read.increases)
        fillGapLater(read);
}

/// The two tools begin at about the same time, and messages may fall between them.
void ILRIntegratedLogReader::fillGapLater(const ArchiveRead& read) {
    constexpr platform::Seconds delay = 3;
    fillingGap_.start(delay, [this, read] {
        constexpr std::int64_t minute = 60'000'000;
        const std::int64_t begun = _updateTime.value_or(platform::logClock());
        const std::int64_t minutes = (platform::logClock() - begun) / minute + 2;
        if (minutes < 1)
            return;
        ArchiveRead gap = read;
        gap.arguments.last() = u"%1m"_s.arg(minutes);
        archiveReads_.start([this, gap] { fillGap(gap); });
    });
}

void ILRIntegratedLogReader::fillGap(const ArchiveRead& read) {
    {
        const std::lock_guard guard(lock_);
        if (!isCurrent(read.entries))
            return;
    }
    LogEntryList found;
    around_.source.read(read.arguments, [&](LogEntries batch) {
        for (LogEntry& entry : batch)
            found.push_back(kept(std::move(entry)));
        return true;
    });
    addMissing(read.entries, found);
}

void ILRIntegratedLogReader::addMissing(const Generation& generation, const LogEntryList& found) {
    {
        const std::lock_guard guard(lock_);
        if (!isCurrent(generation))
            return;
        const auto isThere = [this](const std::shared_ptr<const LogEntry>& entry) {
            return (_firstLiveStreamTimestamp && entry->time >= _firstLiveStreamTimestamp) ||
                   (_lastArchiveStreamTimestamp && entry->time <= _lastArchiveStreamTimestamp);
        };
        const std::size_t before = generation->size();
        std::remove_copy_if(found.begin(), found.end(), std::back_inserter(*generation), isThere);
        if (generation->size() == before)
            return;
        sortByTime(*generation);
    }
    updateRowsSoon();
}

/// Any thread. Any number of calls before the main thread's next turn are one update.
void ILRIntegratedLogReader::updateRowsSoon() {
    {
        const std::lock_guard guard(lock_);
        if (std::exchange(isUpdatePosted_, true))
            return;
    }
    around_.loop.post([self = self_] {
        if (*self)
            (*self)->showRows();
    });
}

void ILRIntegratedLogReader::showRows() {
    {
        const std::lock_guard guard(lock_);
        isUpdatePosted_ = false;
    }
    if (display_.updateRows)
        display_.updateRows();
}

void ILRIntegratedLogReader::findEarlierResults() {
    updateLogAfterIncreasingNumberOfDays(true);
}

void ILRIntegratedLogReader::clear() {
    _numberOfDays = -1;
    updateLogAfterIncreasingNumberOfDays(false);
}

void ILRIntegratedLogReader::reset() {
    fillingGap_.cancel();
    std::unique_ptr<LogSource::Stream> former;  // dies behind the lock, for which it may wait
    const std::lock_guard guard(lock_);
    _logEntries = std::make_shared<LogEntryList>();
    _archiveInsertionIndex = noInsertionIndex;
    former = std::move(_liveStream);
}

void ILRIntegratedLogReader::close() {
    reset();
    _numberOfDays = 0;
    _updateTime.reset();
    isReadingArchive_ = false;
    updateRowsSoon();
}

bool ILRIntegratedLogReader::save(const QString& path) {
    QVariantList saved;
    {
        const std::lock_guard guard(lock_);
        for (const auto& entry : *_logEntries)
            saved.append(entry->propertyList());
    }
    if (saved.isEmpty()) {
        platform::log(u"[ILR] cannot save log: no entries"_s, platform::LogLevel::Warning);
        return false;
    }
    if (!platform::writeFileAtomically(path, platform::writePropertyList(saved)))
        return true;
    platform::log(u"[ILR] cannot save log: %1"_s.arg(path), platform::LogLevel::Warning);
    return false;
}

bool ILRIntegratedLogReader::showsSender() const {
    return !around_.defaults.get(settings::hideSender);
}

bool ILRIntegratedLogReader::coalesces() const {
    return !around_.defaults.get(settings::disableCoalescing);
}

void ILRIntegratedLogReader::toggleMessageSender() {
    flip(around_.defaults, settings::hideSender);
}

void ILRIntegratedLogReader::toggleMessageCoalescing() {
    flip(around_.defaults, settings::disableCoalescing);
}

bool ILRIntegratedLogReader::isDebugLoggingEnabled() const {
    if (_delegate.isDebugLoggingEnabled)
        return _delegate.isDebugLoggingEnabled();
    return around_.defaults.boolForKey(_debugLoggingUserDefaultName);
}

bool ILRIntegratedLogReader::canChangeDebugLogging() const {
    return _delegate.isDebugLoggingEnabled ? static_cast<bool>(_delegate.setDebugLoggingEnabled)
                                           : !_debugLoggingUserDefaultName.isEmpty();
}

void ILRIntegratedLogReader::toggleDebugLogging() {
    const bool wanted = !isDebugLoggingEnabled();
    if (_delegate.isDebugLoggingEnabled && _delegate.setDebugLoggingEnabled)
        _delegate.setDebugLoggingEnabled(wanted);
    else if (canChangeDebugLogging())
        around_.defaults.setObject(_debugLoggingUserDefaultName, wanted);
    if (isDebugLoggingEnabled() != wanted)
        platform::log(u"[ILR] unexpected debug logging state change"_s,
                      platform::LogLevel::Warning);
    if (display_.updateDebugSwitch)
        display_.updateDebugSwitch();
}

/// Settings are how several readers stay in step.
void ILRIntegratedLogReader::observe(const QString& key) {
    if (key == settings::hideSender.name() || key == settings::disableCoalescing.name())
        updateRowsSoon();
    if (key == _debugLoggingUserDefaultName && display_.updateDebugSwitch)
        display_.updateDebugSwitch();
}

std::vector<LogRow> ILRIntegratedLogReader::rows() const {
    const bool merges = coalesces();
    const std::lock_guard guard(lock_);
    return logRows(*_logEntries, _archiveInsertionIndex, merges);
}

LogWording ILRIntegratedLogReader::wording() const {
    return {QDate::currentDate(), showsSender(), _hiddenPrefixes};
}

bool ILRIntegratedLogReader::hasLogEntries() const {
    const std::lock_guard guard(lock_);
    return !_logEntries->empty();
}

}  // namespace diagnostics
