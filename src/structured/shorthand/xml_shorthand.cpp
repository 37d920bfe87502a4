#include "structured/shorthand/xml_shorthand.h"

#include "platform/files/property_list.h"
#include "platform/text/regular_expression.h"

using namespace Qt::Literals::StringLiterals;

namespace structured {

namespace {

/// From the first tag behind `from` to the last `endTag`.
std::optional<QString> tagsBetween(const QString& text, qsizetype from, QLatin1StringView endTag) {
    const qsizetype start = text.indexOf(u'<', from);
    const qsizetype end = text.lastIndexOf(endTag);
    if (start < 0 || end < start)
        return std::nullopt;
    return text.mid(start, end - start);
}

/// Takes a tab from the start of every line, but for lines within a string or key, whose tabs are
/// its own.
QString withoutOneLevel(QStringView text) {
    QString result;
    result.reserve(text.size());
    qsizetype copied = 0;
    bool isText = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QStringView rest = text.sliced(i);
        if (text[i] == u'<') {
            isText = rest.startsWith("<string>"_L1) || rest.startsWith("<key>"_L1);
        } else if (text[i] == u'\n' && !isText && rest.startsWith("\n\t"_L1)) {
            result += text.sliced(copied, i + 1 - copied);
            copied = i + 2;
        }
    }
    return result += text.sliced(copied);
}

/// What surrounds the contents of a root dictionary, on one line so that no line number changes.
struct Envelope {
    QString before, after;
};

Envelope makeEnvelope() {
    QString empty = QString::fromUtf8(platform::writePropertyList(QVariantMap()));
    empty.remove(u'\n').remove(u'\r');
    constexpr auto root = "<dict/>"_L1;
    const qsizetype at = empty.indexOf(root);
    return {empty.left(at) + "<dict>"_L1, "</dict>"_L1 + empty.mid(at + root.size())};
}

}  // namespace

std::optional<QString> contentsOfRootDictionary(const QString& propertyList) {
    const qsizetype root = propertyList.indexOf("<dict>"_L1);
    if (root < 0)
        return std::nullopt;
    auto contents = tagsBetween(propertyList, root + 1, "</dict>"_L1);
    return contents ? std::optional(withoutOneLevel(*contents)) : std::nullopt;
}

std::optional<QString> contentsOfPropertyList(const QString& propertyList) {
    const qsizetype element = propertyList.indexOf("<plist"_L1);
    if (element < 0)
        return std::nullopt;
    return tagsBetween(propertyList, element + 1, "</plist>"_L1);
}

std::optional<WrappedXml> wrappedXmlShorthand(const QString& shorthand) {
    static const Envelope envelope = makeEnvelope();
    const platform::RegularExpression keyFirst(uR"re(^[^<]*<\s*key\s*>)re"_s);
    if (!keyFirst.firstMatch(shorthand) || !shorthand.isValidUtf16())
        return std::nullopt;
    const QString whole = envelope.before + shorthand + envelope.after;
    return WrappedXml{whole.toUtf8(), envelope.before.size()};
}

}  // namespace structured
