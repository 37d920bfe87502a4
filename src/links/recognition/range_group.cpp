#include "links/recognition/range_group.h"

#include <limits>

#include "links/text/trimming.h"

namespace links {
namespace {

/// The number that a text begins with, 0 if it is none; the largest one if it has too many digits.
qint64 integerValue(QStringView text) {
    constexpr qint64 largest = std::numeric_limits<qint64>::max();
    if (text.startsWith(u'+'))
        text = text.sliced(1);
    qint64 value = 0;
    for (const QChar unit : text) {
        if (unit < u'0' || unit > u'9')
            break;
        const int digit = unit.unicode() - u'0';
        if (value > (largest - digit) / 10)
            return largest;
        value = value * 10 + digit;
    }
    return value;
}

void appendZeroPadded(QString& target, qint32 number, qsizetype width) {
    const QString digits = QString::number(number);
    const bool isNegative = number < 0;
    if (isNegative)
        target.append(u'-');
    target.resize(target.size() + std::max<qsizetype>(width - digits.size(), 0), u'0');
    target.append(QStringView(digits).sliced(isNegative ? 1 : 0));
}

}  // namespace

bool RangeGroup::appendNext(QString& target) {
    while (run_ == Run::None) {
        if (isExhausted_)
            return false;
        if (begin(takeAlternative(), target))
            return true;
    }
    return appendFromRun(target);
}

quint64 RangeGroup::countRest() {
    quint64 count = 0;
    QString word;
    while (run_ != Run::None || !isExhausted_) {
        if (run_ != Run::None)
            count += static_cast<quint64>(last_ - current_) + 1;
        else if (begin(takeAlternative(), word))
            ++count;
        else
            continue;
        run_ = Run::None;
        word.clear();
    }
    return count;
}

QStringView RangeGroup::takeAlternative() {
    const qsizetype comma = rest_.indexOf(u',');
    isExhausted_ = comma < 0;
    const QStringView alternative = isExhausted_ ? rest_ : rest_.first(comma);
    rest_ = isExhausted_ ? QStringView() : rest_.sliced(comma + 1);
    return alternative;
}

bool RangeGroup::begin(QStringView alternative, QString& target) {
    const qsizetype dash = alternative.indexOf(u'-');
    if (dash < 0 || alternative.indexOf(u'-', dash + 1) >= 0) {
        target.append(trimmedView(alternative));
        return true;
    }
    beginRun(trimmedView(alternative.first(dash)), trimmedView(alternative.sliced(dash + 1)));
    return false;
}

void RangeGroup::beginRun(QStringView low, QStringView high) {
    if (low.isEmpty() || high.isEmpty())
        return;
    const bool isUnits = low.size() == 1 && integerValue(high) == 0;
    current_ = isUnits ? low.front().unicode() : integerValue(low);
    last_ = isUnits ? high.front().unicode() : integerValue(high);
    width_ = low.startsWith(u'0') ? low.size() : 1;
    if (current_ <= last_)
        run_ = isUnits ? Run::Units : Run::Numbers;
}

bool RangeGroup::appendFromRun(QString& target) {
    if (run_ == Run::Units)
        target.append(QChar(static_cast<char16_t>(current_)));
    else  // The notation counts in 32 bits: what is larger wraps around.
        appendZeroPadded(target, static_cast<qint32>(current_), width_);
    if (current_ == last_)
        run_ = Run::None;
    else
        ++current_;
    return true;
}

}  // namespace links
