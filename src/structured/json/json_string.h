#pragma once

#include <QString>
#include <optional>

namespace structured {

/// A stretch of a text, in UTF-16 units.
struct TextRange {
    qsizetype location = 0;
    qsizetype length = 0;

    friend bool operator==(const TextRange&, const TextRange&) = default;
};

/// A quoted string found in a JSON text.
class DQJSONString {
public:
    /// `isKey`: a colon follows.
    DQJSONString(QString baseStringValue, TextRange range, bool isKey)
        : baseStringValue_(std::move(baseStringValue)), range_(range), isKey_(isKey) {}

    [[nodiscard]] bool key() const { return isKey_; }
    /// The whole text.
    [[nodiscard]] const QString& baseStringValue() const { return baseStringValue_; }
    [[nodiscard]] TextRange range() const { return range_; }
    /// What stands at the range, quotes included, unless it was set to something else.
    [[nodiscard]] QString stringValue() const {
        return stringValue_ ? *stringValue_ : baseStringValue_.mid(range_.location, range_.length);
    }
    void setStringValue(const QString& value) { stringValue_ = value; }

private:
    QString baseStringValue_;
    TextRange range_;
    bool isKey_;
    std::optional<QString> stringValue_;
};

}  // namespace structured
