#pragma once

#include <QString>
#include <QVariant>
#include <optional>
#include <vector>

#include "platform/files/property_list.h"
#include "structured/text_view/detected_format.h"
#include "structured/text_view/format_menu.h"
#include "structured/text_view/pasteboard.h"

namespace platform {
class UserDefaults;
}

namespace structured {

class DQJSONTextViewValidator;
class TextComponent;

/// The structured text editor but for its widget: reads the text after each change, says how it is
/// coloured and set, converts it between spellings, and takes and gives property lists on the
/// pasteboard. Main thread.
class DQJSONTextView {
public:
    /// Both must outlive the editor.
    DQJSONTextView(TextComponent& component, platform::UserDefaults& defaults);

    /// The value of a text in any spelling. Invalid: unreadable.
    [[nodiscard]] static QVariant objectValueWithString(const QString& string);

    /// Replaces the text and forgets what could be undone.
    void setString(const QString& string);
    /// False: the text may not be changed now.
    bool setString(const QString& string, bool undoable, bool notifyDelegate);
    /// Writes a value in the spelling that the user prefers. False: it has none.
    bool setStringBySerializingPropertyList(const QVariant& propertyList, bool undoable);

    /// To be called after each change by the user.
    void didChangeText();
    /// Forgets the values, colours the text and sets its style. To be called also when the text
    /// was changed from outside.
    void parse();
    /// To be called also when the desktop's colours have changed.
    void applySyntaxHighlighting();

    /// Invalid: the text cannot be read.
    [[nodiscard]] QVariant objectValue();
    /// What the validator made of it. Invalid: unreadable or refused.
    [[nodiscard]] QVariant validatedObjectValue();
    /// Of the last text that could be read.
    [[nodiscard]] DQDetectedFormat detectedFormat() const { return detectedFormat_; }
    /// Shows why the text cannot be read. False: nothing to show.
    bool presentSyntaxError();

    /// Empty: the text cannot be read.
    [[nodiscard]] std::vector<FormatMenuItem> formatMenuItems();
    void changeTextViaMenuItem(const FormatMenuItem& item);

    /// In points, from 8 to 50.
    [[nodiscard]] double fontSize() const;
    void setFontSize(double size);
    /// Sets font and spacing; to be called also when the user's fixed-pitch font has changed.
    void setFont();

    /// Inserts what was copied, converted to the editor's spelling. False: not with this type; the
    /// next type is to be tried.
    [[nodiscard]] bool readSelectionFromPasteboard(const PasteboardContents& pasteboard,
                                                   const QString& type);
    /// The selection as an XML property list. Empty: it is none.
    [[nodiscard]] QByteArray selectionAsPropertyList() const;

    [[nodiscard]] DQJSONTextViewValidator* validator() const { return validator_; }
    /// Not owned; null for none.
    void setValidator(DQJSONTextViewValidator* validator) { validator_ = validator; }

private:
    [[nodiscard]] bool readSelectionFromPasteboardPropertyListData(
        const QByteArray& data, const std::optional<QString>& key);

    TextComponent& component_;
    platform::UserDefaults& defaults_;
    DQJSONTextViewValidator* validator_ = nullptr;

    // Nothing: not asked for since the last change. Invalid: unreadable or refused.
    std::optional<QVariant> objectValue_;
    std::optional<QVariant> validatedObjectValue_;
    DQDetectedFormat detectedFormat_ = DQDetectedFormat::None;
    std::optional<platform::ParseError> error_;
};

}  // namespace structured
