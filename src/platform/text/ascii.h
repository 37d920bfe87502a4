#pragma once

#include <QByteArrayView>
#include <QStringView>
#include <algorithm>

namespace platform {

[[nodiscard]] inline bool isAscii(QChar unit) {
    return unit.unicode() < 0x80;
}
[[nodiscard]] inline bool isAscii(char byte) {
    return static_cast<unsigned char>(byte) < 0x80;
}
[[nodiscard]] inline bool isAscii(QStringView text) {
    return std::all_of(text.begin(), text.end(), [](QChar unit) { return isAscii(unit); });
}
[[nodiscard]] inline bool isAscii(QByteArrayView bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return isAscii(byte); });
}

[[nodiscard]] inline bool isAsciiDigit(QChar unit) {
    return unit >= u'0' && unit <= u'9';
}
[[nodiscard]] inline bool isAsciiLetter(QChar unit) {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}
[[nodiscard]] inline bool isAsciiAlphanumeric(QChar unit) {
    return isAsciiLetter(unit) || isAsciiDigit(unit);
}

}  // namespace platform
