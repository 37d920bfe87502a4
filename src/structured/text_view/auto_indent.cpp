#include "structured/text_view/auto_indent.h"

#include <algorithm>

namespace structured {

namespace {

bool endsLine(QChar character) {
    return character == u'\n' || character == u'\r' || character == QChar::ParagraphSeparator ||
           character == QChar::LineSeparator;
}

}  // namespace

QString indentationOfLastLine(const QString& text) {
    const auto start = std::find_if(text.rbegin(), text.rend(), endsLine).base();
    const auto end =
        std::find_if_not(start, text.end(), [](QChar character) { return character.isSpace(); });
    return QString(start, end - start);
}

}  // namespace structured
