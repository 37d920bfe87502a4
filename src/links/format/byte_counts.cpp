#include "links/format/byte_counts.h"

#include <QCoreApplication>
#include <algorithm>
#include <array>

#include "links/format/numbers.h"
#include "links/text/localization.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

// The largest count of 64 bits has 18 EB.
constexpr std::array<const char*, 7> units{
    QT_TRANSLATE_NOOP("Orlop", " Bytes"), QT_TRANSLATE_NOOP("Orlop", " KB"),
    QT_TRANSLATE_NOOP("Orlop", " MB"),    QT_TRANSLATE_NOOP("Orlop", " GB"),
    QT_TRANSLATE_NOOP("Orlop", " TB"),    QT_TRANSLATE_NOOP("Orlop", " PB"),
    QT_TRANSLATE_NOOP("Orlop", " EB")};

/// A power of 1000, the highest that is not above the count.
struct Magnitude {
    std::size_t level = 0;
    quint64 divisor = 1;
};

Magnitude magnitudeOf(quint64 count) {
    Magnitude magnitude;
    while (count / magnitude.divisor >= 1000) {
        magnitude.divisor *= 1000;
        ++magnitude.level;
    }
    return magnitude;
}

int fractionDigits(std::size_t level) {
    return level < 3 ? 1 : static_cast<int>(level) - 1;
}

}  // namespace

QString fileSizeDescriptionWithBytesCount(quint64 bytesCount) {
    return partialFileSizeDescriptionWithBytesCount(bytesCount, 0);
}

QString fileSizeText(qint64 bytesCount) {
    return fileSizeDescriptionWithBytesCount(static_cast<quint64>(std::max<qint64>(bytesCount, 0)));
}

QString partialFileSizeDescriptionWithBytesCount(quint64 bytesCount, quint64 overallBytesCount) {
    if (bytesCount == 0)
        return u"-"_s;
    const auto [level, divisor] = magnitudeOf(bytesCount);
    const double value = static_cast<double>(bytesCount) / static_cast<double>(divisor);
    const QString text = stringWithDouble(value, fractionDigits(level), true);
    if (overallBytesCount != 0 && magnitudeOf(overallBytesCount).level == level)
        return text;
    return text + localized(units[level]);
}

}  // namespace links
