#include "platform/text/charset.h"

#include <unicode/ucnv.h>

#include <limits>
#include <memory>

namespace platform {

namespace {

using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

Converter openConverter(const QByteArray& name) {
    UErrorCode status = U_ZERO_ERROR;
    // A name that the registry lacks would be looked for among files.
    if (!ucnv_getStandardName(name.constData(), "IANA", &status) || U_FAILURE(status))
        return {nullptr, &ucnv_close};
    UConverter* converter = ucnv_open(name.constData(), &status);
    return {U_SUCCESS(status) ? converter : nullptr, &ucnv_close};
}

}  // namespace

std::optional<QString> decodedText(const QByteArray& bytes, const QString& charset) {
    if (bytes.size() > std::numeric_limits<int32_t>::max() / 2)
        return std::nullopt;
    const Converter converter = openConverter(charset.toLatin1());
    if (!converter)
        return std::nullopt;
    // Some charsets give more UTF-16 units than they have bytes.
    QString text;
    auto needed = static_cast<int32_t>(bytes.size());
    UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
    while (status == U_BUFFER_OVERFLOW_ERROR) {
        status = U_ZERO_ERROR;
        text.resize(needed);
        needed = ucnv_toUChars(converter.get(), reinterpret_cast<UChar*>(text.data()),
                               static_cast<int32_t>(text.size()), bytes.constData(),
                               static_cast<int32_t>(bytes.size()), &status);
    }
    text.truncate(needed);
    return U_SUCCESS(status) ? std::optional(text) : std::nullopt;
}

}  // namespace platform
