#pragma once

#include <unicode/unistr.h>

#include <QString>

namespace links {

/// Between Qt's strings and ICU's.
[[nodiscard]] inline QString fromICU(const icu::UnicodeString& text) {
    return QString::fromUtf16(text.getBuffer(), text.length());
}
[[nodiscard]] inline icu::UnicodeString toICU(const QString& text) {
    return icu::UnicodeString(reinterpret_cast<const char16_t*>(text.utf16()),
                              static_cast<int32_t>(text.size()));
}

}  // namespace links
