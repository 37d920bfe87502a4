#include "links/names/anonymized_names.h"

#include "links/paths/path_components.h"
#include "links/text/typography.h"

namespace links {
namespace {

/// Units of the character at `index`.
qsizetype characterLength(const QString& text, qsizetype index) {
    const bool isPair = text[index].isHighSurrogate() && index + 1 < text.size() &&
                        text[index + 1].isLowSurrogate();
    return isPair ? 2 : 1;
}

QString digitsAndDots(const QString& text, qsizetype from) {
    QString hidden;
    const QString dot = dotString();
    for (qsizetype index = from; index < text.size(); index += characterLength(text, index))
        hidden.append(text[index].isDigit() ? QString(text[index]) : dot);
    return hidden;
}

}  // namespace

QString anonymizedStringPreservingExtension(const QString& name, bool preserveExtension,
                                            bool convertToUppercase) {
    if (name.isEmpty())
        return name;
    const QString extension = preserveExtension ? pathExtension(name) : QString();
    const QString base = preserveExtension ? stringByDeletingPathExtension(name) : name;
    const qsizetype firstLength = characterLength(name, 0);
    const QString first =
        convertToUppercase ? name.left(firstLength).toUpper() : name.left(firstLength);
    if (base.size() <= firstLength)
        return first + ellipsisString() + extension;
    const QString hidden = first + ellipsisString() + digitsAndDots(base, firstLength);
    return extension.isEmpty() ? hidden : stringByAppendingPathExtension(hidden, extension);
}

}  // namespace links
