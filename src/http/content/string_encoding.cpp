#include "http/content/string_encoding.h"

#include <unicode/ucnv.h>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <string_view>

#include "platform/text/ascii.h"

namespace http {

namespace {

struct FixedNumber {
    StringEncoding number;
    const char* name;
};

constexpr std::array fixedNumbers{
    FixedNumber{asciiStringEncoding, "US-ASCII"},
    FixedNumber{3, "EUC-JP"},
    FixedNumber{utf8StringEncoding, "UTF-8"},
    FixedNumber{latin1StringEncoding, "ISO-8859-1"},
    FixedNumber{8, "Shift_JIS"},
    FixedNumber{9, "ISO-8859-2"},
    FixedNumber{10, "UTF-16"},
    FixedNumber{11, "windows-1251"},
    FixedNumber{12, "windows-1252"},
    FixedNumber{13, "windows-1253"},
    FixedNumber{14, "windows-1254"},
    FixedNumber{15, "windows-1250"},
    FixedNumber{21, "ISO-2022-JP"},
    FixedNumber{30, "macintosh"},
};
/// Numbers of all other charsets: this plus their place in ICU's list.
constexpr StringEncoding firstListedNumber = 0x80000000;

struct ConverterCloser {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, ConverterCloser>;

Converter openConverter(const char* name) {
    UErrorCode status = U_ZERO_ERROR;
    Converter converter(ucnv_open(name, &status));
    return U_SUCCESS(status) ? std::move(converter) : nullptr;
}

/// RFC 2978, 2.3. ICU itself would overlook any other character.
bool isCharsetName(const QString& name) {
    const auto allowed = [](QChar character) {
        return platform::isAsciiAlphanumeric(character) ||
               QStringView(u"!#$%&'+-^_`{}~.:()").contains(character);
    };
    return !name.isEmpty() && std::all_of(name.begin(), name.end(), allowed);
}

/// ICU's own name for an IANA name or alias. Empty: not known.
std::string_view canonicalName(const char* name) {
    UErrorCode status = U_ZERO_ERROR;
    const char* const canonical = ucnv_getCanonicalName(name, "IANA", &status);
    return U_SUCCESS(status) && canonical != nullptr ? canonical : std::string_view();
}

const char* converterName(StringEncoding encoding) {
    for (const auto& fixed : fixedNumbers)
        if (fixed.number == encoding)
            return fixed.name;
    const StringEncoding index = encoding - firstListedNumber;
    if (encoding < firstListedNumber || index >= static_cast<StringEncoding>(ucnv_countAvailable()))
        return nullptr;
    return ucnv_getAvailableName(static_cast<std::int32_t>(index));
}

}  // namespace

std::optional<StringEncoding> stringEncodingFromIANAName(const QString& name) {
    if (!isCharsetName(name))
        return std::nullopt;
    const std::string_view canonical = canonicalName(name.toLatin1().constData());
    if (canonical.empty())
        return std::nullopt;
    for (const auto& fixed : fixedNumbers)
        if (canonicalName(fixed.name) == canonical)
            return fixed.number;
    for (std::int32_t index = 0; index < ucnv_countAvailable(); ++index)
        if (std::string_view(ucnv_getAvailableName(index)) == canonical)
            return firstListedNumber + static_cast<StringEncoding>(index);
    return std::nullopt;
}

std::optional<QString> decodedString(const QByteArray& data, StringEncoding encoding) {
    const char* const name = converterName(encoding);
    const Converter converter = name == nullptr ? nullptr : openConverter(name);
    if (converter == nullptr)
        return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &status);
    // No charset makes more than two UTF-16 units of one byte.
    constexpr qsizetype longest = std::numeric_limits<std::int32_t>::max() / 2;
    if (data.size() > longest)
        return std::nullopt;
    QString text(data.size() * 2, Qt::Uninitialized);
    const auto capacity = static_cast<std::int32_t>(text.size());
    const std::int32_t length =
        ucnv_toUChars(converter.get(), reinterpret_cast<UChar*>(text.data()), capacity,
                      data.constData(), static_cast<std::int32_t>(data.size()), &status);
    if (U_FAILURE(status))
        return std::nullopt;
    text.resize(length);
    return text;
}

}  // namespace http
