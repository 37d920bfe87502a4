#include "diagnostics/log_entry.h"

#include <chrono>

using namespace Qt::Literals::StringLiterals;

namespace diagnostics {

namespace {

/// The number in decimal digits at a place. Nothing: something else stands there.
std::optional<int> number(QByteArrayView text, qsizetype at, qsizetype digits) {
    int value = 0;
    for (const char c : text.sliced(at, digits)) {
        if (c < '0' || c > '9')
            return std::nullopt;
        value = 10 * value + (c - '0');
    }
    return value;
}

/// Where digits and other characters stand: `0` for a digit, `+` for either sign.
bool hasShape(QByteArrayView text, QByteArrayView shape) {
    if (text.size() != shape.size())
        return false;
    for (qsizetype i = 0; i < shape.size(); ++i) {
        const bool fits = shape[i] == '0'   ? text[i] >= '0' && text[i] <= '9'
                          : shape[i] == '+' ? text[i] == '+' || text[i] == '-'
                                            : text[i] == shape[i];
        if (!fits)
            return false;
    }
    return true;
}

}  // namespace

std::optional<std::int64_t> parsedLogTimestamp(QByteArrayView text) {
    using namespace std::chrono;
    if (!hasShape(text, "0000-00-00 00:00:00.000000+0000"))
        return std::nullopt;
    const auto at = [&](qsizetype place, qsizetype digits) { return *number(text, place, digits); };
    const year_month_day day(year(at(0, 4)), month(static_cast<unsigned>(at(5, 2))),
                             std::chrono::day(static_cast<unsigned>(at(8, 2))));
    if (!day.ok() || at(11, 2) > 23 || at(14, 2) > 59 || at(17, 2) > 60)
        return std::nullopt;
    const minutes zone = (hours(at(27, 2)) + minutes(at(29, 2))) * (text[26] == '-' ? -1 : 1);
    const microseconds time = sys_days(day).time_since_epoch() + hours(at(11, 2)) +
                              minutes(at(14, 2)) + seconds(at(17, 2)) + microseconds(at(20, 6)) -
                              zone;
    return time.count();
}

bool LogEntry::isProblem() const {
    return messageType == u"Error" || messageType == u"Fault";
}

QString problemPredicate() {
    return uR"((messageType == "Error") || (messageType == "Fault"))"_s;
}

QVariantMap LogEntry::propertyList() const {
    return {{u"timestamp"_s, timestamp},
            {u"eventMessage"_s, eventMessage},
            {u"processImagePath"_s, processImagePath},
            {u"senderImagePath"_s, senderImagePath},
            {u"messageType"_s, messageType},
            {u"category"_s, category},
            {u"processID"_s, static_cast<qint64>(processID)}};
}

LogEntry LogEntryMaker::entry(const structured::FlatObject& object) {
    LogEntry entry;
    entry.timestamp = structured::decodedJsonText(object.value("timestamp"));
    entry.time = parsedLogTimestamp(entry.timestamp.toLatin1());
    entry.eventMessage = structured::decodedJsonText(object.value("eventMessage"));
    entry.processImagePath = shared(object.value("processImagePath"), process_);
    entry.senderImagePath = shared(object.value("senderImagePath"), sender_);
    entry.messageType = shared(object.value("messageType"), type_);
    entry.category = shared(object.value("category"), category_);
    entry.processID = object.value("processID").toByteArray().toLongLong();
    return entry;
}

const QString& LogEntryMaker::shared(QByteArrayView written, Known& last) {
    if (last.written == written)
        return last.text;
    last.written = written.toByteArray();
    constexpr qsizetype mostTexts = 1000;
    if (texts_.size() >= mostTexts)
        texts_.clear();
    QString& text = texts_[last.written];
    if (text.isNull())
        text = structured::decodedJsonText(written);
    return last.text = text;
}

}  // namespace diagnostics
