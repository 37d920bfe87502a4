#include "structured/json/json_writer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "structured/json/bounds.h"

using namespace Qt::Literals::StringLiterals;

namespace structured {

namespace {

/// What a variant holds, without the copy that QVariant's own accessors make.
template <typename Value>
const Value& contentsOf(const QVariant& variant) {
    return *static_cast<const Value*>(variant.constData());
}

/// Stops at the first value that JSON has no form for: then the operations answer false.
class JsonWriter {
public:
    explicit JsonWriter(JsonStyle style) : style_(style) {}

    [[nodiscard]] std::optional<QString> write(const QVariant& root);

private:
    [[nodiscard]] bool writeValue(const QVariant& value);
    [[nodiscard]] bool writeObject(const QVariantMap& members);
    [[nodiscard]] bool writeArray(const QVariantList& elements);
    [[nodiscard]] bool writeUnwrapped(const QVariantMap& members);
    [[nodiscard]] bool writeMember(const QString& key, const QVariant& value);
    [[nodiscard]] bool writeString(const QString& string);
    [[nodiscard]] bool writeDouble(double value);
    void writeInteger(qint64 value);
    void writeEscape(char16_t unit);
    void startLine();
    [[nodiscard]] bool needsEscape(char16_t unit) const;

    JsonStyle style_;
    QString text_;
    int depth_ = 0;
    int indentation_ = 0;
};

std::optional<QString> JsonWriter::write(const QVariant& root) {
    const bool isObject = root.typeId() == QMetaType::QVariantMap;
    if (!isObject && root.typeId() != QMetaType::QVariantList)
        return std::nullopt;
    const bool isWritten = isObject && style_.layout == JsonLayout::Unwrapped
                               ? writeUnwrapped(contentsOf<QVariantMap>(root))
                               : writeValue(root);
    return isWritten ? std::optional(std::move(text_)) : std::nullopt;
}

bool JsonWriter::writeValue(const QVariant& value) {
    switch (value.typeId()) {
        case QMetaType::QVariantMap:
            return writeObject(contentsOf<QVariantMap>(value));
        case QMetaType::QVariantList:
            return writeArray(contentsOf<QVariantList>(value));
        case QMetaType::QString:
            return writeString(contentsOf<QString>(value));
        case QMetaType::Bool:
            text_ += value.toBool() ? "true"_L1 : "false"_L1;
            return true;
        case QMetaType::Nullptr:
            text_ += "null"_L1;
            return true;
        case QMetaType::Double:
            return writeDouble(value.toDouble());
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::Long:
        case QMetaType::LongLong:
            writeInteger(value.toLongLong());
            return true;
        case QMetaType::ULong:
        case QMetaType::ULongLong:
            text_ += value.toString();
            return true;
        default:
            return false;
    }
}

bool JsonWriter::writeObject(const QVariantMap& members) {
    if (++depth_ > maximumDepth)
        return false;
    text_ += u'{';
    ++indentation_;
    for (auto member = members.begin(); member != members.end(); ++member) {
        if (member != members.begin())
            text_ += u',';
        startLine();
        if (!writeMember(member.key(), member.value()))
            return false;
    }
    --indentation_;
    if (!members.isEmpty())
        startLine();
    text_ += u'}';
    --depth_;
    return true;
}

bool JsonWriter::writeArray(const QVariantList& elements) {
    if (++depth_ > maximumDepth)
        return false;
    text_ += u'[';
    ++indentation_;
    for (qsizetype i = 0; i < elements.size(); ++i) {
        if (i > 0)
            text_ += u',';
        startLine();
        if (!writeValue(elements[i]))
            return false;
    }
    --indentation_;
    if (!elements.isEmpty())
        startLine();
    text_ += u']';
    --depth_;
    return true;
}

bool JsonWriter::writeUnwrapped(const QVariantMap& members) {
    ++depth_;
    for (auto member = members.begin(); member != members.end(); ++member) {
        if (member != members.begin())
            text_ += ",\n"_L1;
        if (!writeMember(member.key(), member.value()))
            return false;
    }
    if (!members.isEmpty())
        text_ += u'\n';
    return true;
}

bool JsonWriter::writeMember(const QString& key, const QVariant& value) {
    if (!writeString(key))
        return false;
    text_ += style_.layout == JsonLayout::Compact ? ":"_L1 : " : "_L1;
    return writeValue(value);
}

bool JsonWriter::needsEscape(char16_t unit) const {
    switch (unit) {
        case u'"':
        case u'\\':
        case u'\u0085':
        case u'\u2028':
        case u'\u2029':
            return true;
        case u'/':
            return style_.escapesSlashes;
        default:
            return unit < u' ';
    }
}

bool JsonWriter::writeString(const QString& string) {
    if (!string.isValidUtf16())
        return false;
    const QStringView view = string;
    text_ += u'"';
    qsizetype written = 0;
    for (qsizetype i = 0; i < view.size(); ++i) {
        const char16_t unit = view[i].unicode();
        if (needsEscape(unit)) {
            text_ += view.sliced(written, i - written);
            writeEscape(unit);
            written = i + 1;
        }
    }
    text_ += view.sliced(written);
    text_ += u'"';
    return true;
}

void JsonWriter::writeEscape(char16_t unit) {
    text_ += u'\\';
    switch (unit) {
        case u'\b':
            text_ += u'b';
            return;
        case u'\f':
            text_ += u'f';
            return;
        case u'\n':
            text_ += u'n';
            return;
        case u'\r':
            text_ += u'r';
            return;
        case u'\t':
            text_ += u't';
            return;
        case u'"':
        case u'\\':
        case u'/':
            text_ += QChar(unit);
            return;
        default:
            text_ += u"u%1"_s.arg(uint{unit}, 4, 16, QLatin1Char('0'));
    }
}

void JsonWriter::writeInteger(qint64 value) {
    std::array<char, 24> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), value).ptr;
    text_ += QLatin1StringView(digits.begin(), end);
}

bool JsonWriter::writeDouble(double value) {
    if (!std::isfinite(value))
        return false;
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), value).ptr;
    text_ += QLatin1StringView(digits.begin(), end);
    // Without a point it would read back as an integer.
    if (std::none_of(digits.begin(), end, [](char c) { return c == '.' || c == 'e'; }))
        text_ += ".0"_L1;
    return true;
}

void JsonWriter::startLine() {
    if (style_.layout == JsonLayout::Compact)
        return;
    text_ += u'\n';
    for (int i = 0; i < indentation_; ++i)
        text_ += u'\t';
}

}  // namespace

std::optional<QString> writeJson(const QVariant& value, JsonStyle style) {
    return JsonWriter(style).write(value);
}

}  // namespace structured
