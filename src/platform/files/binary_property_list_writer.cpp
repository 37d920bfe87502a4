#include <QDateTime>
#include <QHash>
#include <QtEndian>
#include <algorithm>
#include <bit>
#include <optional>
#include <vector>

#include "platform/files/binary_property_list.h"
#include "platform/files/property_list_kinds.h"
#include "platform/text/ascii.h"

namespace platform {

namespace {

/// Lays all values out in one table, in which arrays and dictionaries refer to the others by
/// number. Equal texts are stored once.
class BinaryWriter {
public:
    /// Empty: the value cannot be written.
    [[nodiscard]] QByteArray document(const QVariant& value) {
        if (!add(value, 0))
            return {};
        referenceSize_ = bytesFor(objects_.size());
        out_ = "bplist00";
        std::vector<quint64> offsets;
        offsets.reserve(objects_.size());
        for (const Object& object : objects_) {
            offsets.push_back(static_cast<quint64>(out_.size()));
            append(object);
        }
        appendTable(offsets);
        return std::move(out_);
    }

private:
    struct Object {
        PropertyListKind kind;
        QVariant value;
        /// Of an array its elements; of a dictionary all keys, then all values.
        std::vector<quint64> references;
    };

    std::optional<quint64> add(const QVariant& value, int depth);
    quint64 addString(const QString& text);
    bool addChildren(std::vector<quint64>& references, const QVariantList& values, int depth);

    void append(const Object& object);
    void appendString(const QString& text);
    void appendInteger(qint64 number);
    void appendLargeInteger(quint64 number);
    void appendMarker(unsigned char type, qsizetype count);
    void appendBigEndian(quint64 number, int size);
    void appendTable(const std::vector<quint64>& offsets);

    static int bytesFor(quint64 number) {
        for (const int bytes : {1, 2, 4}) {
            if (number >> (8 * bytes) == 0)
                return bytes;
        }
        return 8;
    }

    std::vector<Object> objects_;
    QHash<QString, quint64> strings_;
    int referenceSize_ = 1;
    QByteArray out_;
};

std::optional<quint64> BinaryWriter::add(const QVariant& value, int depth) {
    const PropertyListKind kind = propertyListKind(value);
    if (kind == PropertyListKind::None || depth >= deepestPropertyList)
        return std::nullopt;
    if (kind == PropertyListKind::String)
        return addString(value.toString());
    const std::size_t number = objects_.size();
    objects_.push_back({kind, value, {}});
    std::vector<quint64> references;
    bool isComplete = true;
    if (kind == PropertyListKind::Dictionary) {
        const QVariantMap map = value.toMap();
        for (auto entry = map.begin(); entry != map.end(); ++entry)
            references.push_back(addString(entry.key()));
        isComplete = addChildren(references, map.values(), depth);
    } else if (kind == PropertyListKind::Array) {
        isComplete = addChildren(references, value.toList(), depth);
    }
    objects_[number].references = std::move(references);
    return isComplete ? std::optional<quint64>(number) : std::nullopt;
}

quint64 BinaryWriter::addString(const QString& text) {
    const auto known = strings_.constFind(text);
    if (known != strings_.constEnd())
        return *known;
    objects_.push_back({PropertyListKind::String, text, {}});
    return *strings_.insert(text, objects_.size() - 1);
}

bool BinaryWriter::addChildren(std::vector<quint64>& references, const QVariantList& values,
                               int depth) {
    for (const QVariant& value : values) {
        const std::optional<quint64> number = add(value, depth + 1);
        if (!number)
            return false;
        references.push_back(*number);
    }
    return true;
}

void BinaryWriter::append(const Object& object) {
    const auto count = static_cast<qsizetype>(object.references.size());
    switch (object.kind) {
        case PropertyListKind::None:
            break;
        case PropertyListKind::Dictionary:
            appendMarker(0xD0, count / 2);
            break;
        case PropertyListKind::Array:
            appendMarker(0xA0, count);
            break;
        case PropertyListKind::String:
            appendString(object.value.toString());
            break;
        case PropertyListKind::Integer:
            if (isLargeInteger(object.value))
                appendLargeInteger(object.value.toULongLong());
            else
                appendInteger(object.value.toLongLong());
            break;
        case PropertyListKind::Real:
            out_ += '\x23';
            appendBigEndian(std::bit_cast<quint64>(object.value.toDouble()), 8);
            break;
        case PropertyListKind::Boolean:
            out_ += object.value.toBool() ? '\x09' : '\x08';
            break;
        case PropertyListKind::Data:
            appendMarker(0x40, object.value.toByteArray().size());
            out_ += object.value.toByteArray();
            break;
        case PropertyListKind::Date: {
            const qint64 time = object.value.toDateTime().toMSecsSinceEpoch();
            out_ += '\x33';
            appendBigEndian(std::bit_cast<quint64>(
                                static_cast<double>(time - referenceDateMilliseconds) / 1000),
                            8);
            break;
        }
    }
    for (const quint64 reference : object.references)
        appendBigEndian(reference, referenceSize_);
}

void BinaryWriter::appendString(const QString& text) {
    if (isAscii(text)) {
        appendMarker(0x50, text.size());
        out_ += text.toLatin1();
        return;
    }
    appendMarker(0x60, text.size());
    for (const QChar unit : text)
        appendBigEndian(unit.unicode(), 2);
}

/// One, two and four bytes are unsigned, eight are signed.
void BinaryWriter::appendInteger(qint64 number) {
    const int size = number < 0 ? 8 : bytesFor(static_cast<quint64>(number));
    out_ += static_cast<char>(0x10 | std::countr_zero(static_cast<unsigned>(size)));
    appendBigEndian(static_cast<quint64>(number), size);
}

/// Sixteen bytes, since eight would be taken for a negative number.
void BinaryWriter::appendLargeInteger(quint64 number) {
    out_ += '\x14';
    out_.append(8, '\0');
    appendBigEndian(number, 8);
}

void BinaryWriter::appendMarker(unsigned char type, qsizetype count) {
    constexpr qsizetype countFollows = 0xF;
    out_ += static_cast<char>(type | std::min(count, countFollows));
    if (count >= countFollows)
        appendInteger(count);
}

void BinaryWriter::appendBigEndian(quint64 number, int size) {
    const quint64 bytes = qToBigEndian(number << (64 - 8 * size));
    out_.append(reinterpret_cast<const char*>(&bytes), size);
}

void BinaryWriter::appendTable(const std::vector<quint64>& offsets) {
    const auto table = static_cast<quint64>(out_.size());
    const int offsetSize = bytesFor(table);
    for (const quint64 offset : offsets)
        appendBigEndian(offset, offsetSize);
    out_.append(6, '\0');
    out_ += static_cast<char>(offsetSize);
    out_ += static_cast<char>(referenceSize_);
    for (const quint64 number : {quint64{objects_.size()}, quint64{0}, table})
        appendBigEndian(number, 8);
}

}  // namespace

QByteArray writeBinaryPropertyList(const QVariant& value) {
    return BinaryWriter().document(value);
}

}  // namespace platform
