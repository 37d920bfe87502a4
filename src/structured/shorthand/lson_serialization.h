#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>
#include <optional>

#include "platform/files/property_list.h"
#include "structured/text_view/detected_format.h"

namespace structured {

/// What the reading of a text gave.
struct ParsedText {
    /// As in `JsonResult`, in the XML forms also with QByteArray and QDateTime. Invalid: none.
    QVariant object;
    /// None unless there is an object.
    DQDetectedFormat format = DQDetectedFormat::None;
    /// Why there is no object. Nothing if there is one, or if the text is blank.
    std::optional<platform::ParseError> error;
};

/// One value in four spellings: a whole XML property list; XML Shorthand, the contents of its root
/// dictionary; strict JSON; and JSON Shorthand (LSON), which does without the outer braces and the
/// commas at line ends.
///
/// The shorthands are made from the whole forms by changing their text, so what JSON and property
/// lists allow settles every question of grammar.
///
/// Any thread.
class DQLSONSerialization {
public:
    /// Without the commas at line ends.
    [[nodiscard]] static QString LSONStringFromJSONString(const QString& json);
    /// With commas at line ends.
    [[nodiscard]] static QString JSONStringFromLSONString(const QString& lson);

    /// `unwrap` takes away a root object's braces, `useLSON` the commas at line ends. Nothing: the
    /// object has no JSON form.
    [[nodiscard]] static std::optional<QString> JSONStringWithObject(const QVariant& object,
                                                                     bool unwrap, bool useLSON,
                                                                     bool escapesSlashes = false);
    /// `unwrap` leaves only what is inside a root dictionary, or for any other root what is inside
    /// the `plist` element. Nothing: the object is no property list.
    [[nodiscard]] static std::optional<QString> XMLStringWithObject(const QVariant& object,
                                                                    bool unwrap);

    /// Reads any spelling, JSON first. Of two errors, answers that of the spelling that the text
    /// seems to be meant in.
    [[nodiscard]] static ParsedText objectWithString(const QString& text);
    /// Reads either spelling of JSON.
    [[nodiscard]] static ParsedText objectWithJSONString(const QString& text);
    /// Reads XML Shorthand from `text`, else whatever property list `data` holds.
    [[nodiscard]] static ParsedText objectWithData(const QByteArray& data,
                                                   const QString& fromXMLString);

    /// Whether data and dates travel through JSON as texts ("data:...", "date:..."); off unless
    /// set. For the whole process.
    static void setConvertsSpecialValues(bool converts);
    [[nodiscard]] static bool convertsSpecialValues();
};

}  // namespace structured
