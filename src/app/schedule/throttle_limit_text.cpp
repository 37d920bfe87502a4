#include "app/schedule/throttle_limit_text.h"

#include <QLocale>
#include <algorithm>
#include <limits>

#include "links/format/formatting_locale.h"

namespace app {

namespace {

constexpr qint64 thousand = 1000;
constexpr qint64 largest = std::numeric_limits<qint64>::max() / thousand;

const QLocale& locale() {
    static const QLocale locale = [] {
        QLocale own(links::numberLocaleName());
        own.setNumberOptions(QLocale::OmitGroupSeparator);
        return own;
    }();
    return locale;
}

/// Separators between thousands are understood, decimals left out. 0: not a number.
qint64 wholeNumber(const QString& text) {
    QLocale reader = locale();
    reader.setNumberOptions(QLocale::DefaultNumberOptions);
    bool isNumber = false;
    const double number = reader.toDouble(text.trimmed(), &isNumber);
    constexpr qint64 most = largest / 2;
    return isNumber && number >= 1
               ? static_cast<qint64>(std::min(number, static_cast<double>(most)))
               : 0;
}

}  // namespace

QString throttleLimitText(qint64 bytesPerSecond) {
    return locale().toString(std::max<qint64>(1, bytesPerSecond / thousand));
}

const QStringList& throttleLimitSuggestions() {
    static const QStringList suggestions = [] {
        QStringList texts;
        for (const qint64 value : {100, 200, 300, 400, 500, 1000, 2000, 3000, 4000, 5000}) {
            texts.append(throttleLimitText(value * thousand));
        }
        return texts;
    }();
    return suggestions;
}

ThrottleLimitEntry throttleLimitEntry(const QString& text) {
    const qint64 bytesPerSecond = std::max<qint64>(1, wholeNumber(text)) * thousand;
    return {throttleLimitText(bytesPerSecond), bytesPerSecond};
}

}  // namespace app
