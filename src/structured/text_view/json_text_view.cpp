#include "structured/text_view/json_text_view.h"

#include <QCoreApplication>

#include "platform/base/user_defaults.h"
#include "structured/settings.h"
#include "structured/shorthand/lson_serialization.h"
#include "structured/text_view/json_text_view_validator.h"
#include "structured/text_view/text_component.h"

namespace structured {

DQJSONTextView::DQJSONTextView(TextComponent& component, platform::UserDefaults& defaults)
    : component_(component), defaults_(defaults) {}

QVariant DQJSONTextView::objectValueWithString(const QString& string) {
    return DQLSONSerialization::objectWithString(string).object;
}

void DQJSONTextView::setString(const QString& string) {
    component_.setText(string);
    parse();
}

bool DQJSONTextView::setString(const QString& string, bool undoable, bool notifyDelegate) {
    if (string == component_.text())
        return true;
    if (!undoable) {
        setString(string);
        return true;
    }
    if (!component_.replaceText(string))
        return false;
    if (notifyDelegate) {
        didChangeText();
    } else {
        parse();
    }
    return true;
}

bool DQJSONTextView::setStringBySerializingPropertyList(const QVariant& propertyList,
                                                        bool undoable) {
    const bool isShort = defaults_.get(settings::prefersShorthand);
    std::optional<QString> text;
    if (defaults_.get(settings::prefersJSON)) {
        text = DQLSONSerialization::JSONStringWithObject(
            propertyList, isShort, isShort, defaults_.get(settings::escapesJSONSlashes));
    }
    if (!text)
        text = DQLSONSerialization::XMLStringWithObject(propertyList, isShort);
    return text && setString(*text, undoable, false);
}

void DQJSONTextView::didChangeText() {
    parse();
    if (validator_)
        validator_->didChangeObjectValueForTextView(*this);
}

void DQJSONTextView::parse() {
    objectValue_.reset();
    validatedObjectValue_.reset();
    applySyntaxHighlighting();
    setFont();
}

void DQJSONTextView::applySyntaxHighlighting() {
    const bool isTolerant = defaults_.get(settings::highlightsDespiteError);
    SyntaxHighlighting highlighting;
    if (!isTolerant && !objectValue().isValid()) {
        highlighting.background = SyntaxRole::InvalidCode;
    } else if (isTolerant || validatedObjectValue().isValid()) {
        // The format is known only once the text has been read.
        static_cast<void>(objectValue());
        const QString text = component_.text();
        highlighting = syntaxHighlighting(text, detectedFormat_);
        if (validator_)
            validator_->didApplySyntaxHighlightingToTextStorage(text, highlighting, *this);
    }
    component_.showHighlighting(highlighting);
}

QVariant DQJSONTextView::objectValue() {
    if (!objectValue_) {
        ParsedText parsed = DQLSONSerialization::objectWithString(component_.text());
        if (parsed.object.isValid())
            detectedFormat_ = parsed.format;
        error_ = std::move(parsed.error);
        objectValue_ = std::move(parsed.object);
    }
    return *objectValue_;
}

QVariant DQJSONTextView::validatedObjectValue() {
    if (!validatedObjectValue_) {
        const QVariant object = objectValue();
        validatedObjectValue_ =
            object.isValid() && validator_ ? validator_->validateObjectValue(object, this) : object;
    }
    return *validatedObjectValue_;
}

bool DQJSONTextView::presentSyntaxError() {
    if (!error_)
        return false;
    const QString message = error_->line == 0
                                ? error_->text
                                : QCoreApplication::translate("Orlop", "Line %1, column %2: %3")
                                      .arg(QString::number(error_->line),
                                           QString::number(error_->column), error_->text);
    component_.presentAlert(message);
    return true;
}

std::vector<FormatMenuItem> DQJSONTextView::formatMenuItems() {
    const QVariant object = objectValue();
    if (!object.isValid())
        return {};
    return structured::formatMenuItems(object, component_.text(), detectedFormat_,
                                       defaults_.get(settings::escapesJSONSlashes));
}

void DQJSONTextView::changeTextViaMenuItem(const FormatMenuItem& item) {
    const bool isDone =
        item.text ? setString(*item.text, true, true) : item.state == FormatMenuItem::State::On;
    if (!isDone)
        component_.beep();
}

double DQJSONTextView::fontSize() const {
    return editorFontSize(defaults_);
}

void DQJSONTextView::setFontSize(double size) {
    defaults_.set(settings::fontSize, size);
    setFont();
}

void DQJSONTextView::setFont() {
    component_.showStyle(
        editorTextStyle(defaults_, component_.tabWidth(fontSize()), detectedFormat_));
}

bool DQJSONTextView::readSelectionFromPasteboard(const PasteboardContents& pasteboard,
                                                 const QString& type) {
    if (type == keyPasteboardType && pasteboard.key) {
        return readSelectionFromPasteboardPropertyListData(pasteboard.text.toUtf8(),
                                                           pasteboard.key);
    }
    return type == propertyListPasteboardType &&
           convertsPastedPropertyList(pasteboard, detectedFormat_) &&
           readSelectionFromPasteboardPropertyListData(pasteboard.propertyList, std::nullopt);
}

bool DQJSONTextView::readSelectionFromPasteboardPropertyListData(
    const QByteArray& data, const std::optional<QString>& key) {
    const PasteStyle style{detectedFormat_, defaults_.get(settings::prefersJSON),
                           defaults_.get(settings::prefersShorthand),
                           defaults_.get(settings::escapesJSONSlashes)};
    const auto text = textForPastedPropertyList(data, key, style);
    if (!text || !component_.replaceSelection(*text))
        return false;
    didChangeText();
    return true;
}

QByteArray DQJSONTextView::selectionAsPropertyList() const {
    return platform::writePropertyList(selectedPropertyList(component_.selectedText()));
}

}  // namespace structured
