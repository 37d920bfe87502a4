#pragma once

#include <QByteArrayView>

namespace structured {

/// A place in a text as a person counts it: lines and characters from 1.
struct TextPosition {
    qint64 line;
    qint64 column;
};

/// Where a byte of a UTF-8 text stands. CR, LF and CR LF end a line.
[[nodiscard]] TextPosition textPosition(QByteArrayView utf8, qsizetype offset);

}  // namespace structured
