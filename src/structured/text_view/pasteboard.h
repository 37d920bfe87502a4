#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <optional>

#include "structured/text_view/detected_format.h"

namespace structured {

/// A property list in XML.
inline const QString propertyListPasteboardType =
    QStringLiteral("com.tarnworks.PasteboardType.NSPropertyListXMLFormat_v1_0");
/// The key of a member that was dragged out of a property list editor; its value stands beside it
/// as text, in XML.
inline const QString keyPasteboardType = QStringLiteral("com.apple.xcode.plist.key");

/// What was copied or dragged, as far as the structured text editor looks at it.
struct PasteboardContents {
    /// Empty: none.
    QString text;
    QByteArray propertyList;
    /// Nothing: none.
    std::optional<QString> key;
};

/// The value of a selected text. Invalid: none, a lone string, or nothing that a property list can
/// hold.
[[nodiscard]] QVariant selectedPropertyList(const QString& selectedText);

/// The platform's types and our own, in order of preference. None stay none.
[[nodiscard]] QStringList writablePasteboardTypes(const QStringList& platformTypes,
                                                  const QString& selectedText);
[[nodiscard]] QStringList readablePasteboardTypes(const QStringList& platformTypes);

/// Whether a property list that comes along with a text should be written anew in the editor's
/// spelling, rather than the text be inserted as it is.
[[nodiscard]] bool convertsPastedPropertyList(const PasteboardContents& contents,
                                              DQDetectedFormat editorFormat);

struct PasteStyle {
    DQDetectedFormat editorFormat = DQDetectedFormat::None;
    bool prefersJSON = false;
    bool prefersShorthand = false;
    bool escapesSlashes = false;
};

/// The text to insert for a property list, as the one member `key` of a dictionary if there is a
/// key. Nothing: the data is no property list, or there is nothing in it.
[[nodiscard]] std::optional<QString> textForPastedPropertyList(const QByteArray& data,
                                                               const std::optional<QString>& key,
                                                               const PasteStyle& style);

}  // namespace structured
