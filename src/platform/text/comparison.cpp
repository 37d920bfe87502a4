#include "platform/text/comparison.h"

#include <unicode/coll.h>

#include <QByteArray>
#include <QLocale>
#include <algorithm>
#include <memory>

#include "platform/text/ascii.h"

namespace platform {

namespace {

std::unique_ptr<icu::Collator> makeCollator() {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale locale =
        icu::Locale::forLanguageTag(QLocale().bcp47Name().toStdString(), status);
    status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(locale, status));
    if (!collator || U_FAILURE(status))
        return nullptr;
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    // Texts that differ must not be equal: lists would come in another order each time.
    collator->setAttribute(UCOL_STRENGTH, UCOL_IDENTICAL, status);
    return collator;
}

/// Null if ICU lacks its data. Loading it takes time, so it waits for the first comparison.
const icu::Collator* collator() {
    static const std::unique_ptr<icu::Collator> shared = makeCollator();
    return shared.get();
}

const char16_t* unitsOf(const QString& text) {
    return reinterpret_cast<const char16_t*>(text.utf16());
}

int sign(int number) {
    return (number > 0) - (number < 0);
}

/// Half- and full-width forms become the ordinary ones (Unicode TR11).
QString withoutWidth(QString text) {
    for (QChar& unit : text) {
        const QChar::Decomposition tag = unit.decompositionTag();
        if (tag == QChar::Wide || tag == QChar::Narrow)
            unit = unit.decomposition().at(0);
    }
    return text;
}

/// Marks written above, below or through a letter. The combining classes leave out vowel signs,
/// viramas and voicing marks, which make another letter.
bool isDiacritic(QChar unit) {
    constexpr int overlay = 1;
    constexpr int firstFixedPosition = 10;
    const int combiningClass = unit.combiningClass();
    return combiningClass == overlay || combiningClass >= firstFixedPosition;
}

}  // namespace

int compareStringsNaturally(const QString& a, const QString& b) {
    if (a.isEmpty() || b.isEmpty())
        return int{a.isEmpty()} - int{b.isEmpty()};
    if (collator() == nullptr)
        return sign(a.compare(b));
    UErrorCode status = U_ZERO_ERROR;
    return collator()->compare(unitsOf(a), static_cast<int32_t>(a.size()), unitsOf(b),
                               static_cast<int32_t>(b.size()), status);
}

QByteArray naturalSortKey(const QString& text) {
    // No key of ICU begins with this byte, so it sorts last.
    if (text.isEmpty())
        return QByteArray(1, '\xff');
    if (collator() == nullptr)
        return text.toUtf8() + '\0';
    const auto length = static_cast<int32_t>(text.size());
    QByteArray key(4 * length + 16, Qt::Uninitialized);
    const auto writeKey = [&] {
        return collator()->getSortKey(unitsOf(text), length, reinterpret_cast<uint8_t*>(key.data()),
                                      static_cast<int32_t>(key.size()));
    };
    const int32_t size = writeKey();
    const bool fits = size <= key.size();
    key.resize(size);
    if (!fits)
        writeKey();
    key.squeeze();
    return key;
}

QString folded(const QString& text) {
    // Upper case, since that also spells out the letters that have none (sharp s).
    QString result = withoutWidth(text).toUpper().normalized(QString::NormalizationForm_D);
    result.removeIf(isDiacritic);
    // Marks that remain join their letter again, or the bare letter would be found in it.
    return result.normalized(QString::NormalizationForm_C);
}

bool containsFolded(const QString& text, const QString& needle) {
    if (isAscii(text) && isAscii(needle))
        return text.contains(needle, Qt::CaseInsensitive);
    return folded(text).contains(folded(needle));
}

}  // namespace platform
