#include "structured/json_writer.h"

#include <QLocale>

#include "structured/json_validity.h"
#include "structured/variant_contents.h"

using namespace Qt::Literals::StringLiterals;

namespace structured {

namespace {

/// Writes a value that has been found valid.
class JsonWriter {
public:
    explicit JsonWriter(JsonStyle style) : style_(style) {}

    QString write(const QVariant& root) {
        if (style_.layout == JsonLayout::Unwrapped && root.typeId() == QMetaType::QVariantMap) {
            writeUnwrapped(root.toMap());
        } else {
            writeValue(root);
        }
        return std::move(text_);
    }

private:
    void writeValue(const QVariant& value);
    void writeObject(const QVariantMap& members);
    void writeArray(const QVariantList& elements);
    void writeUnwrapped(const QVariantMap& members);
    void writeMember(const QString& key, const QVariant& value);
    void writeString(const QString& string);
    void writeEscape(char16_t unit);
    void writeDouble(double value);
    void startLine();
    [[nodiscard]] bool needsEscape(char16_t unit) const;

    JsonStyle style_;
    QString text_;
    int level_ = 0;
};

void JsonWriter::writeValue(const QVariant& value) {
    switch (value.typeId()) {
        case QMetaType::QVariantMap:
            return writeObject(contentsOf<QVariantMap>(value));
        case QMetaType::QVariantList:
            return writeArray(contentsOf<QVariantList>(value));
        case QMetaType::QString:
            return writeString(contentsOf<QString>(value));
        case QMetaType::Bool:
            text_ += value.toBool() ? "true"_L1 : "false"_L1;
            return;
        case QMetaType::Nullptr:
            text_ += "null"_L1;
            return;
        case QMetaType::Double:
            return writeDouble(value.toDouble());
        default:
            text_ += value.toString();
    }
}

void JsonWriter::writeObject(const QVariantMap& members) {
    text_ += u'{';
    ++level_;
    for (auto member = members.begin(); member != members.end(); ++member) {
        if (member != members.begin())
            text_ += u',';
        startLine();
        writeMember(member.key(), member.value());
    }
    --level_;
    if (!members.isEmpty())
        startLine();
    text_ += u'}';
}

void JsonWriter::writeArray(const QVariantList& elements) {
    text_ += u'[';
    ++level_;
    for (qsizetype i = 0; i < elements.size(); ++i) {
        if (i > 0)
            text_ += u',';
        startLine();
        writeValue(elements[i]);
    }
    --level_;
    if (!elements.isEmpty())
        startLine();
    text_ += u']';
}

void JsonWriter::writeUnwrapped(const QVariantMap& members) {
    for (auto member = members.begin(); member != members.end(); ++member) {
        if (member != members.begin())
            text_ += ",\n"_L1;
        writeMember(member.key(), member.value());
    }
    if (!members.isEmpty())
        text_ += u'\n';
}

void JsonWriter::writeMember(const QString& key, const QVariant& value) {
    writeString(key);
    text_ += style_.layout == JsonLayout::Compact ? ":"_L1 : " : "_L1;
    writeValue(value);
}

bool JsonWriter::needsEscape(char16_t unit) const {
    switch (unit) {
        case u'"':
        case u'\\':
            return true;
        case u'/':
            return style_.escapesSlashes;
        case u'\u0085':
        case u'\u2028':
        case u'\u2029':
            return true;
        default:
            return unit < u' ';
    }
}

void JsonWriter::writeString(const QString& string) {
    text_ += u'"';
    qsizetype written = 0;
    for (qsizetype i = 0; i < string.size(); ++i) {
        const char16_t unit = string[i].unicode();
        if (needsEscape(unit)) {
            text_ += QStringView(string).mid(written, i - written);
            writeEscape(unit);
            written = i + 1;
        }
    }
    text_ += QStringView(string).mid(written);
    text_ += u'"';
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

void JsonWriter::writeDouble(double value) {
    const QString digits = QString::number(value, 'g', QLocale::FloatingPointShortest);
    text_ += digits;
    // Without a point it would read back as an integer.
    if (!digits.contains(u'.') && !digits.contains(u'e'))
        text_ += ".0"_L1;
}

void JsonWriter::startLine() {
    if (style_.layout == JsonLayout::Compact)
        return;
    text_ += u'\n';
    for (int i = 0; i < level_; ++i)
        text_ += u'\t';
}

}  // namespace

std::optional<QString> writeJson(const QVariant& value, JsonStyle style) {
    if (!isValidJSONObject(value))
        return std::nullopt;
    return JsonWriter(style).write(value);
}

}  // namespace structured
