#include "structured/shorthand/lson_serialization.h"

#include <QCoreApplication>
#include <algorithm>
#include <atomic>

#include "platform/text/regular_expression.h"
#include "structured/json/json_reader.h"
#include "structured/json/json_writer.h"
#include "structured/json/special_values.h"
#include "structured/shorthand/json_shorthand.h"
#include "structured/shorthand/xml_shorthand.h"
#include "structured/text_view/text_position.h"

using namespace Qt::Literals::StringLiterals;

namespace structured {

namespace {

std::atomic<bool> isConvertingSpecialValues = false;

ParsedText failure(platform::ParseError error) {
    return {{}, DQDetectedFormat::None, std::move(error)};
}

/// The first line of a text that was wrapped stands further right than the user sees it.
platform::ParseError movedLeft(platform::ParseError error, qsizetype shift) {
    if (error.line == 1)
        error.column = std::max(error.column - shift, qint64{1});
    return error;
}

/// What is missing at the end of a text in braces of ours is missing before the last of them.
platform::ParseError placedInsideBraces(platform::ParseError error, const QByteArray& inBraces) {
    const TextPosition end = textPosition(inBraces, inBraces.size() - 1);
    if (error.line >= end.line) {
        error.line = end.line;
        error.column = std::min(error.column, end.column);
    }
    return movedLeft(std::move(error), 1);
}

/// What is missing at the end of a text is missing there, not in what we put behind it.
platform::ParseError placedInside(platform::ParseError error, const QByteArray& typed) {
    const TextPosition end = textPosition(typed, typed.size());
    if (error.line > end.line || (error.line == end.line && error.column > end.column)) {
        error.line = end.line;
        error.column = end.column;
    }
    return error;
}

ParsedText parsedJson(const QString& text, DQDetectedFormat format, bool isInBraces) {
    const QByteArray utf8 = text.toUtf8();
    JsonResult result = readJson(utf8);
    if (!result.value.isValid()) {
        return failure(isInBraces ? placedInsideBraces(std::move(result.error), utf8)
                                  : std::move(result.error));
    }
    if (DQLSONSerialization::convertsSpecialValues() &&
        result.value.typeId() == QMetaType::QVariantMap) {
        convertSpecialValuesFromStrings(result.value);
    }
    return {std::move(result.value), format, std::nullopt};
}

qsizetype indexOfLoneSurrogate(QStringView text) {
    qsizetype i = 0;
    while (i < text.size() && !(text[i].isSurrogate() && !text.mid(i, 2).isValidUtf16()))
        i += text[i].isHighSurrogate() ? 2 : 1;
    return i;
}

ParsedText cannotBeEncoded(const QString& text) {
    const QByteArray whole = text.left(indexOfLoneSurrogate(text)).toUtf8();
    const TextPosition position = textPosition(whole, whole.size());
    return failure({QCoreApplication::translate("Orlop", "Half a character stands here."),
                    position.line, position.column});
}

/// With the values that JSON lacks turned into texts. Nothing: that cannot be.
std::optional<QVariant> convertedForJson(const QVariant& object) {
    if (object.typeId() != QMetaType::QVariantMap)
        return std::nullopt;
    QVariant copy = object;
    if (convertSpecialValuesToStrings(copy) != SpecialValues::Converted)
        return std::nullopt;
    return copy;
}

bool mayBeXml(const QString& text) {
    const auto first = std::find_if_not(text.begin(), text.end(),
                                        [](QChar character) { return character.isSpace(); });
    return first != text.end() && *first == u'<';
}

bool hasKeyElement(const QString& text) {
    const platform::RegularExpression key(uR"re(<\s*key\s*>)re"_s);
    return key.firstMatch(text).has_value();
}

}  // namespace

QString DQLSONSerialization::LSONStringFromJSONString(const QString& json) {
    return textWithoutLineEndCommas(json);
}

QString DQLSONSerialization::JSONStringFromLSONString(const QString& lson) {
    return textWithLineEndCommas(lson);
}

std::optional<QString> DQLSONSerialization::JSONStringWithObject(const QVariant& object,
                                                                 bool unwrap, bool useLSON,
                                                                 bool escapesSlashes) {
    const JsonStyle style{unwrap ? JsonLayout::Unwrapped : JsonLayout::Pretty, escapesSlashes};
    auto text = writeJson(object, style);
    if (!text && convertsSpecialValues()) {
        if (const auto converted = convertedForJson(object))
            text = writeJson(*converted, style);
    }
    return text && useLSON ? textWithoutLineEndCommas(*text) : text;
}

std::optional<QString> DQLSONSerialization::XMLStringWithObject(const QVariant& object,
                                                                bool unwrap) {
    if (!object.isValid())
        return std::nullopt;
    const QByteArray data = platform::writePropertyList(object);
    if (data.isEmpty())
        return std::nullopt;
    const QString whole = QString::fromUtf8(data);
    if (!unwrap)
        return whole;
    const bool hasMembers = object.typeId() == QMetaType::QVariantMap && !object.toMap().isEmpty();
    return (hasMembers ? contentsOfRootDictionary(whole) : contentsOfPropertyList(whole))
        .value_or(whole);
}

ParsedText DQLSONSerialization::objectWithString(const QString& text) {
    if (text.trimmed().isEmpty())
        return {};
    if (!text.isValidUtf16())
        return cannotBeEncoded(text);
    ParsedText json = objectWithJSONString(text);
    if (json.object.isValid())
        return json;
    ParsedText xml = objectWithData(text.toUtf8(), text);
    return xml.object.isValid() || hasKeyElement(text) ? xml : json;
}

ParsedText DQLSONSerialization::objectWithJSONString(const QString& text) {
    if (!text.isValidUtf16())
        return cannotBeEncoded(text);
    const auto inBraces = textInBraces(text);
    const QString& whole = inBraces ? *inBraces : text;
    const auto format = inBraces ? DQDetectedFormat::JSONShorthand : DQDetectedFormat::JSON;
    ParsedText parsed = parsedJson(whole, format, inBraces.has_value());
    if (parsed.object.isValid())
        return parsed;
    // No commas make JSON of XML, which may be long.
    const QString completed = mayBeXml(whole) ? whole : textWithLineEndCommas(whole);
    if (completed == whole)
        return parsed;
    return parsedJson(completed, DQDetectedFormat::JSONShorthand, inBraces.has_value());
}

ParsedText DQLSONSerialization::objectWithData(const QByteArray& data,
                                               const QString& fromXMLString) {
    const auto wrapped = wrappedXmlShorthand(fromXMLString);
    platform::PropertyListResult result =
        platform::readPropertyList(wrapped ? wrapped->data : data, platform::largestPropertyList,
                                   platform::DuplicateKeys::Refused);
    if (!result.value.isValid())
        return failure(wrapped ? placedInside(movedLeft(std::move(result.error), wrapped->shift),
                                              fromXMLString.toUtf8())
                               : std::move(result.error));
    return {std::move(result.value),
            wrapped ? DQDetectedFormat::XMLShorthand : DQDetectedFormat::XML, std::nullopt};
}

void DQLSONSerialization::setConvertsSpecialValues(bool converts) {
    isConvertingSpecialValues = converts;
}

bool DQLSONSerialization::convertsSpecialValues() {
    return isConvertingSpecialValues;
}

}  // namespace structured
