#include "structured/text_view/text_position.h"

#include <algorithm>

namespace structured {

TextPosition textPosition(QByteArrayView utf8, qsizetype offset) {
    TextPosition position{1, 1};
    const qsizetype end = std::clamp(offset, qsizetype{0}, utf8.size());
    for (qsizetype i = 0; i < end; ++i) {
        const auto byte = static_cast<unsigned char>(utf8[i]);
        const bool isFirstOfPair = byte == '\r' && i + 1 < utf8.size() && utf8[i + 1] == '\n';
        const bool isContinuation = (byte & 0xC0U) == 0x80U;
        if ((byte == '\n' || byte == '\r') && !isFirstOfPair) {
            ++position.line;
            position.column = 1;
        } else if (!isContinuation) {
            ++position.column;
        }
    }
    return position;
}

}  // namespace structured
