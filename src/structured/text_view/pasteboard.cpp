#include "structured/text_view/pasteboard.h"

#include "platform/files/property_list.h"
#include "structured/shorthand/lson_serialization.h"

namespace structured {

QVariant selectedPropertyList(const QString& selectedText) {
    QVariant object = DQLSONSerialization::objectWithString(selectedText).object;
    if (object.typeId() == QMetaType::QString || platform::writePropertyList(object).isEmpty())
        return {};
    return object;
}

QStringList writablePasteboardTypes(const QStringList& platformTypes, const QString& selectedText) {
    if (platformTypes.isEmpty() || !selectedPropertyList(selectedText).isValid())
        return platformTypes;
    return platformTypes + QStringList{propertyListPasteboardType};
}

QStringList readablePasteboardTypes(const QStringList& platformTypes) {
    if (platformTypes.isEmpty())
        return {};
    return QStringList{propertyListPasteboardType, keyPasteboardType} + platformTypes;
}

bool convertsPastedPropertyList(const PasteboardContents& contents, DQDetectedFormat editorFormat) {
    if (contents.text.isEmpty())
        return true;
    const ParsedText parsed = DQLSONSerialization::objectWithString(contents.text);
    if (editorFormat == DQDetectedFormat::None || !parsed.object.isValid())
        return false;
    const bool isSameFamily =
        parsed.format == editorFormat || (isJSON(parsed.format) && isJSON(editorFormat));
    return !isSameFamily;
}

std::optional<QString> textForPastedPropertyList(const QByteArray& data,
                                                 const std::optional<QString>& key,
                                                 const PasteStyle& style) {
    QVariant value = platform::readPropertyList(data).value;
    if (!value.isValid())
        return std::nullopt;
    if (key) {
        value = QVariantMap{{*key, value}};
    }
    std::optional<QString> text;
    if (isJSON(style.editorFormat) ||
        (style.editorFormat == DQDetectedFormat::None && style.prefersJSON)) {
        const bool useLSON =
            style.editorFormat == DQDetectedFormat::JSONShorthand || style.prefersShorthand;
        text =
            DQLSONSerialization::JSONStringWithObject(value, true, useLSON, style.escapesSlashes);
    }
    if (!text)
        text = DQLSONSerialization::XMLStringWithObject(value, true);
    const QString trimmed = text.value_or(QString()).trimmed();
    return trimmed.isEmpty() ? std::nullopt : std::optional(trimmed);
}

}  // namespace structured
