#include "diagnostics/log_rows.h"

#include <QDateTime>
#include <QLocale>

using namespace Qt::Literals::StringLiterals;

namespace diagnostics {

namespace {

constexpr std::int64_t microsecondsInMillisecond = 1000;

QString lastComponent(const QString& path) {
    return path.sliced(path.lastIndexOf(u'/') + 1);
}

/// The day as the locale writes it, with all digits of the year.
QString localizedDay(const QDate& day) {
    static const QString format = [] {
        QString shortFormat = QLocale().dateFormat(QLocale::ShortFormat);
        if (!shortFormat.contains(u"yyyy"))
            shortFormat.replace(u"yy"_s, u"yyyy"_s);
        return shortFormat.contains(u"yyyy") ? shortFormat : u"yyyy-MM-dd"_s;
    }();
    return QLocale().toString(day, format);
}

QString senderText(const LogEntry& entry) {
    const QString process = lastComponent(entry.processImagePath);
    const QString sender = lastComponent(entry.senderImagePath);
    if (sender.isEmpty() || sender == process)
        return process;
    return process.isEmpty() ? sender : process + u" > "_s + sender;
}

bool areEqual(const LogEntry& a, const LogEntry& b) {
    return a.eventMessage == b.eventMessage && a.senderImagePath == b.senderImagePath &&
           a.processImagePath == b.processImagePath;
}

}  // namespace

QString logMomentText(std::int64_t time, const QDate& today) {
    const QDateTime moment = QDateTime::fromMSecsSinceEpoch(time / microsecondsInMillisecond);
    const QString clock = moment.time().toString(u"HH:mm:ss.zzz");
    return moment.date() == today ? clock : localizedDay(moment.date()) + u" — "_s + clock;
}

std::vector<LogRow> logRows(const LogEntryList& entries, std::size_t insertionIndex,
                            bool coalesces) {
    std::vector<LogRow> rows;
    rows.reserve(entries.size() + 1);
    const LogRow marker{LogRow::Kind::Marker, nullptr, 1};
    bool mayGrow = false;
    for (std::size_t index = 0; index < entries.size(); ++index) {
        const auto& entry = entries[index];
        if (entry->eventMessage.isEmpty())
            continue;
        const bool isMeeting = index == insertionIndex;
        if (coalesces && mayGrow && !isMeeting && areEqual(*rows.back().entry, *entry)) {
            ++rows.back().count;
            continue;
        }
        if (isMeeting)
            rows.push_back(marker);
        rows.push_back({LogRow::Kind::Entry, entry, 1});
        mayGrow = true;
    }
    if (entries.size() == insertionIndex)
        rows.push_back(marker);
    return rows;
}

LogRowText logRowText(const LogRow& row, const LogWording& wording) {
    const LogEntry& entry = *row.entry;
    QString meta = entry.time ? logMomentText(*entry.time, wording.today) : u"?"_s;
    if (wording.showsSender) {
        const QString sender = senderText(entry);
        if (!sender.isEmpty())
            meta += u" | "_s + sender;
    }
    QString message = entry.eventMessage;
    message.replace(u'\n', QChar::LineSeparator);
    for (const QString& prefix : wording.hiddenPrefixes) {
        if (message.startsWith(prefix))
            message.remove(0, prefix.size());
    }
    return {meta + u": "_s, message, row.count > 1 ? u" (×%1)"_s.arg(row.count) : QString()};
}

QString logMarkerText() {
    return u"👀"_s;
}

}  // namespace diagnostics
