#include "links/names/safe_file_name.h"

#include <algorithm>

#include "links/names/file_names.h"
#include "links/paths/path_components.h"
#include "links/text/trimming.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

constexpr qsizetype longestKeptExtensionBytes = 32;
constexpr qsizetype longestCharacterBytes = 4;

/// Bytes in UTF-8 of the character at the start, and how many units it has.
struct CharacterSize {
    qsizetype units;
    qsizetype bytes;
};

CharacterSize firstCharacterSize(QStringView text) {
    const char16_t code = text.front().unicode();
    if (code < 0x80)
        return {1, 1};
    if (code < 0x800)
        return {1, 2};
    const bool isPair =
        text.front().isHighSurrogate() && text.size() > 1 && text[1].isLowSurrogate();
    return isPair ? CharacterSize{2, 4} : CharacterSize{1, 3};
}

/// The explicit and implicit directional formatting characters of UAX #9.
bool isBidirectionalControl(char16_t code) {
    return code == 0x061C || code == 0x200E || code == 0x200F ||
           (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

bool isForbidden(QChar unit) {
    const QChar::Category category = unit.category();
    return category == QChar::Other_Control || category == QChar::Separator_Line ||
           category == QChar::Separator_Paragraph || isBidirectionalControl(unit.unicode());
}

/// Half of a surrogate pair has no spelling in UTF-8.
void replaceLoneSurrogates(QString& name) {
    if (!name.isValidUtf16())
        name = QString::fromUtf8(name.toUtf8());
}

/// Takes the meaning from what we would read as one of our own names, without making it longer.
void disarmOwnNames(QString& name) {
    name.replace(u".orlop-xf-"_s, u"_orlop-xf-"_s, Qt::CaseInsensitive);
    name.replace(u".orlop-rf-"_s, u"_orlop-rf-"_s, Qt::CaseInsensitive);
    const QString metadata = u".orlopinfo"_s;
    if (name.endsWith(metadata, Qt::CaseInsensitive))
        name[name.size() - metadata.size()] = u'_';
    if (isNegligibleFilename(name))
        name[0] = u'-';
}

/// Blanks and dots at the cut go: a name should not end in either.
QString cutToBytes(QStringView text, qsizetype bytes) {
    const QStringView cut = prefixOfUtf8Length(text, bytes);
    QStringView kept = cut;
    while (!kept.isEmpty() && (kept.back() == u'.' || isWhitespaceOrNewline(kept.back())))
        kept.chop(1);
    return (kept.isEmpty() ? cut : kept).toString();
}

}  // namespace

QString safeFileName(const QString& name, qsizetype reservedBytes) {
    QString safe = nameWithoutMarks(name);
    replaceLoneSurrogates(safe);
    safe = fittedFileName(cleanFilename(safe), reservedBytes);
    disarmOwnNames(safe);
    return safe.isEmpty() ? u"-"_s : safe;
}

QString nameWithoutMarks(QString name) {
    name.replace(u'\t', u' ').removeIf(isForbidden);
    return name.isEmpty() ? u"-"_s : name;
}

QString fittedFileName(const QString& name, qsizetype reservedBytes) {
    const qsizetype room = std::max<qsizetype>(maximumFileNameBytes - reservedBytes, 1);
    if (utf8Length(name) <= room)
        return name;
    const QString extension = pathExtension(name);
    const qsizetype extensionBytes = utf8Length(extension) + 1;
    if (extension.isEmpty() || extensionBytes > longestKeptExtensionBytes ||
        extensionBytes + longestCharacterBytes > room)
        return cutToBytes(name, room);
    const QStringView base = QStringView(name).chopped(extension.size() + 1);
    return cutToBytes(base, room - extensionBytes) + u'.' + extension;
}

QStringView prefixOfUtf8Length(QStringView text, qsizetype bytes) {
    qsizetype units = 0;
    while (units < text.size()) {
        const CharacterSize size = firstCharacterSize(text.sliced(units));
        if (size.bytes > bytes)
            break;
        bytes -= size.bytes;
        units += size.units;
    }
    return text.first(units);
}

qsizetype utf8Length(QStringView text) {
    qsizetype bytes = 0;
    for (qsizetype units = 0; units < text.size();) {
        const CharacterSize size = firstCharacterSize(text.sliced(units));
        bytes += size.bytes;
        units += size.units;
    }
    return bytes;
}

}  // namespace links
