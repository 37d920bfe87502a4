#include "structured/shorthand/json_shorthand.h"

namespace structured {

namespace {

constexpr bool isLineEnd(QChar character) {
    return character == u'\n' || character == u'\r';
}

/// What can end an item: neither a separator nor an opener nor a blank.
bool endsItem(QChar character) {
    return !character.isSpace() && character != u',' && character != u':' && character != u'[' &&
           character != u'{';
}

/// Where the next character stands that is no blank; the text's size if there is none.
qsizetype skipBlanks(QStringView text, qsizetype from) {
    while (from < text.size() && text[from].isSpace())
        ++from;
    return from;
}

bool beginsItem(QStringView text, qsizetype at) {
    return at < text.size() && text[at] != u']' && text[at] != u'}';
}

/// Where between two places the last line end stands. -1: nowhere.
qsizetype lastLineEnd(QStringView text, qsizetype from, qsizetype to) {
    do {
        --to;
    } while (to >= from && !isLineEnd(text[to]));
    return to >= from ? to : -1;
}

}  // namespace

QString textWithoutLineEndCommas(const QString& json) {
    const QStringView text = json;
    QString result;
    result.reserve(text.size());
    qsizetype copied = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!endsItem(text[i]))
            continue;
        const qsizetype comma = skipBlanks(text, i + 1);
        const bool endsLine =
            comma + 1 < text.size() && text[comma] == u',' && isLineEnd(text[comma + 1]);
        const qsizetype next = endsLine ? skipBlanks(text, comma + 1) : comma;
        if (endsLine && beginsItem(text, next)) {
            result += text.sliced(copied, comma - copied);
            copied = comma + 1;
            i = next;
        } else {
            i = comma - 1;
        }
    }
    return result += text.sliced(copied);
}

QString textWithLineEndCommas(const QString& shorthand) {
    const QStringView text = shorthand;
    QString result;
    result.reserve(text.size() + text.size() / 8);
    qsizetype copied = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!endsItem(text[i]))
            continue;
        const qsizetype next = skipBlanks(text, i + 1);
        const qsizetype lineEnd = lastLineEnd(text, i + 1, next);
        if (lineEnd >= 0 && beginsItem(text, next)) {
            result += text.sliced(copied, lineEnd - copied);
            result += u',';
            copied = lineEnd;
            i = next;
        } else {
            i = next - 1;
        }
    }
    return result += text.sliced(copied);
}

std::optional<QString> textInBraces(const QString& shorthand) {
    const qsizetype start = skipBlanks(shorthand, 0);
    if (start == shorthand.size() || shorthand[start] != u'"')
        return std::nullopt;
    return QString(u'{' + shorthand + u'}');
}

}  // namespace structured
