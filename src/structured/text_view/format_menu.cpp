#include "structured/text_view/format_menu.h"

#include "structured/shorthand/lson_serialization.h"

using namespace Qt::Literals::StringLiterals;

namespace structured {

namespace {

class MenuBuilder {
public:
    MenuBuilder(const QString& currentText, DQDetectedFormat detectedFormat)
        : currentText_(currentText), detectedFormat_(detectedFormat) {}

    /// The whole form of a family and its shorthand, if they exist and differ.
    void addFamily(const QString& title, DQDetectedFormat format,
                   const std::optional<QString>& whole, DQDetectedFormat shorthandFormat,
                   const std::optional<QString>& shorthand) {
        if (!whole)
            return;
        if (!items_.empty()) {
            FormatMenuItem separator;
            separator.isSeparator = true;
            items_.push_back(separator);
        }
        add(title, format, *whole);
        if (shorthand && *shorthand != *whole)
            add(title + u" Shorthand"_s, shorthandFormat, *shorthand);
    }

    [[nodiscard]] std::vector<FormatMenuItem> takeItems() { return std::move(items_); }

private:
    void add(const QString& title, DQDetectedFormat format, const QString& text) {
        FormatMenuItem item;
        item.title = title;
        if (text == currentText_) {
            item.state = FormatMenuItem::State::On;
        } else {
            item.text = text;
            item.state = format == detectedFormat_ ? FormatMenuItem::State::Mixed
                                                   : FormatMenuItem::State::Off;
        }
        items_.push_back(std::move(item));
    }

    const QString& currentText_;
    DQDetectedFormat detectedFormat_;
    std::vector<FormatMenuItem> items_;
};

}  // namespace

std::vector<FormatMenuItem> formatMenuItems(const QVariant& object, const QString& currentText,
                                            DQDetectedFormat detectedFormat, bool escapesSlashes) {
    using Serialization = DQLSONSerialization;
    MenuBuilder menu(currentText, detectedFormat);
    menu.addFamily(
        u"XML"_s, DQDetectedFormat::XML, Serialization::XMLStringWithObject(object, false),
        DQDetectedFormat::XMLShorthand, Serialization::XMLStringWithObject(object, true));
    menu.addFamily(u"JSON"_s, DQDetectedFormat::JSON,
                   Serialization::JSONStringWithObject(object, false, false, escapesSlashes),
                   DQDetectedFormat::JSONShorthand,
                   Serialization::JSONStringWithObject(object, true, true, escapesSlashes));
    return menu.takeItems();
}

}  // namespace structured
