#include <QDateTime>
#include <QtEndian>
#include <bit>
#include <cmath>
#include <optional>
#include <vector>

#include "platform/base/utc.h"
#include "platform/files/binary_property_list.h"
#include "platform/files/property_list_kinds.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

/// An object may be referred to many times, so a few bytes can stand for a tree that fills any
/// memory once somebody walks it. This is how many values and bytes of text a whole may unfold to.
constexpr quint64 largestUnfolded = largestPropertyList;

constexpr quint64 mostObjects = 4'000'000;

constexpr quint64 trailerSize = 32;

class BinaryReader {
public:
    explicit BinaryReader(const QByteArray& data)
        : bytes_(reinterpret_cast<const uchar*>(data.constData())),
          size_(static_cast<quint64>(data.size())) {}

    [[nodiscard]] PropertyListResult document() {
        QVariant value;
        if (readTrailer())
            value = read(top_, 0).value;
        if (!error_.isEmpty())
            return {{}, PropertyListFormat::Binary, {error_, 0, 0}};
        return {value, PropertyListFormat::Binary, {}};
    }

private:
    struct Object {
        enum class State { Unread, InWork, Done };
        State state = State::Unread;
        QVariant value;
        quint64 unfolded = 0;
        int height = 0;
    };
    /// A stretch of the data that has been checked to lie inside it.
    struct Stretch {
        quint64 start = 0;
        quint64 count = 0;
    };

    bool readTrailer();
    const Object& read(quint64 number, int depth);
    void readInto(Object& object, quint64 number, int depth);
    void readSimple(Object& object, unsigned marker, quint64 at);
    void readContainer(Object& object, unsigned marker, quint64 at, int depth);
    const Object& readChild(Object& parent, quint64 referenceAt, int depth);
    QVariant readInteger(unsigned marker, quint64 at);
    QVariant readReal(unsigned marker, quint64 at);
    QVariant readDate(quint64 at);
    QString readUtf16(const Stretch& units) const;
    std::optional<Stretch> counted(unsigned marker, quint64 at, quint64 unitSize);
    std::optional<quint64> bigEndian(quint64 at, quint64 size);

    void fail(const QString& text) {
        if (error_.isEmpty())
            error_ = text;
    }

    const uchar* const bytes_;
    const quint64 size_;
    quint64 end_ = 0;  ///< Where the objects end.
    quint64 offsets_ = 0;
    quint64 offsetSize_ = 0;
    quint64 referenceSize_ = 0;
    quint64 top_ = 0;
    std::vector<Object> objects_;
    QString error_;
};

std::optional<quint64> BinaryReader::bigEndian(quint64 at, quint64 size) {
    if (at > size_ || size > size_ - at || size > sizeof(quint64)) {
        fail(u"It is cut short."_s);
        return std::nullopt;
    }
    quint64 number = 0;
    for (quint64 i = 0; i < size; ++i)
        number = number << 8 | bytes_[at + i];
    return number;
}

bool BinaryReader::readTrailer() {
    constexpr quint64 headerSize = 8;
    if (size_ < headerSize + trailerSize || bytes_[6] != '0') {
        fail(u"It has no header and trailer of a binary property list."_s);
        return false;
    }
    const quint64 trailer = size_ - trailerSize;
    offsetSize_ = bytes_[trailer + 6];
    referenceSize_ = bytes_[trailer + 7];
    const quint64 count = *bigEndian(trailer + 8, 8);
    top_ = *bigEndian(trailer + 16, 8);
    offsets_ = *bigEndian(trailer + 24, 8);
    end_ = offsets_;
    const bool isSound = offsetSize_ >= 1 && offsetSize_ <= 8 && referenceSize_ >= 1 &&
                         referenceSize_ <= 8 && offsets_ >= headerSize && offsets_ <= trailer &&
                         count <= mostObjects && count <= (trailer - offsets_) / offsetSize_ &&
                         top_ < count;
    if (isSound)
        objects_.resize(count);
    else
        fail(u"Its trailer contradicts its size."_s);
    return isSound;
}

const BinaryReader::Object& BinaryReader::read(quint64 number, int depth) {
    static const Object nothing;
    if (number >= objects_.size()) {
        fail(u"It refers to a value that is not there."_s);
        return nothing;
    }
    Object& object = objects_[number];
    if (object.state == Object::State::InWork)
        fail(u"A value contains itself."_s);
    else if (depth + object.height >= deepestPropertyList)
        fail(u"The values are nested more than %1 levels deep."_s.arg(deepestPropertyList));
    else if (object.state == Object::State::Unread)
        readInto(object, number, depth);
    return error_.isEmpty() ? object : nothing;
}

void BinaryReader::readInto(Object& object, quint64 number, int depth) {
    const std::optional<quint64> at = bigEndian(offsets_ + number * offsetSize_, offsetSize_);
    if (!at || *at >= end_) {
        fail(u"A value lies outside the file."_s);
        return;
    }
    object.state = Object::State::InWork;
    object.unfolded = 1;
    const unsigned marker = bytes_[*at];
    const unsigned type = marker >> 4;
    if (type == 0xA || type == 0xD)
        readContainer(object, marker, *at + 1, depth);
    else
        readSimple(object, marker, *at + 1);
    object.state = Object::State::Done;
}

void BinaryReader::readSimple(Object& object, unsigned marker, quint64 at) {
    switch (marker >> 4) {
        case 0x0:
            if (marker == 0x08 || marker == 0x09)
                object.value = marker == 0x09;
            break;
        case 0x1:
            object.value = readInteger(marker, at);
            break;
        case 0x2:
            object.value = readReal(marker, at);
            break;
        case 0x3:
            object.value = readDate(at);
            break;
        case 0x4:
            if (const auto data = counted(marker, at, 1)) {
                object.value = QByteArray(reinterpret_cast<const char*>(bytes_ + data->start),
                                          static_cast<qsizetype>(data->count));
                object.unfolded += data->count;
            }
            break;
        case 0x5:
            if (const auto text = counted(marker, at, 1)) {
                object.value =
                    QString::fromLatin1(reinterpret_cast<const char*>(bytes_ + text->start),
                                        static_cast<qsizetype>(text->count));
                object.unfolded += text->count;
            }
            break;
        case 0x6:
            if (const auto units = counted(marker, at, 2)) {
                object.value = readUtf16(*units);
                object.unfolded += units->count;
            }
            break;
        default:
            break;
    }
    if (!object.value.isValid())
        fail(u"It holds something that property lists do not know."_s);
}

void BinaryReader::readContainer(Object& object, unsigned marker, quint64 at, int depth) {
    const bool isDictionary = marker >> 4 == 0xD;
    const auto elements = counted(marker, at, (isDictionary ? 2 : 1) * referenceSize_);
    if (!elements)
        return;
    QVariantMap map;
    QVariantList list;
    const quint64 values = elements->start + (isDictionary ? elements->count * referenceSize_ : 0);
    for (quint64 i = 0; i < elements->count && error_.isEmpty(); ++i) {
        if (isDictionary) {
            const QVariant key =
                readChild(object, elements->start + i * referenceSize_, depth).value;
            if (key.typeId() != QMetaType::QString)
                fail(u"A dictionary has a key that is no string."_s);
            map.insert(key.toString(), readChild(object, values + i * referenceSize_, depth).value);
        } else {
            list.append(readChild(object, values + i * referenceSize_, depth).value);
        }
    }
    object.value = isDictionary ? QVariant(map) : QVariant(list);
}

const BinaryReader::Object& BinaryReader::readChild(Object& parent, quint64 referenceAt,
                                                    int depth) {
    const Object& child = read(bigEndian(referenceAt, referenceSize_).value_or(0), depth + 1);
    parent.unfolded += child.unfolded;
    parent.height = std::max(parent.height, child.height + 1);
    if (parent.unfolded > largestUnfolded)
        fail(u"A few bytes stand for more values than can be read."_s);
    return child;
}

QVariant BinaryReader::readInteger(unsigned marker, quint64 at) {
    constexpr unsigned longest = 4;
    const unsigned exponent = marker & 0xF;
    if (exponent > longest)
        return {};
    const quint64 size = quint64{1} << exponent;
    // Sixteen bytes serve for unsigned numbers that eight signed ones cannot hold.
    const quint64 head = size > 8 ? bigEndian(at, 8).value_or(1) : 0;
    const quint64 start = size > 8 ? at + 8 : at;
    const quint64 bits = bigEndian(start, std::min<quint64>(size, 8)).value_or(0);
    const auto number = static_cast<qint64>(bits);
    if (size > 8 && head == 0 && number < 0)
        return bits;
    if (size > 8 && head != 0 && !(head == ~quint64{0} && number < 0))
        return {};
    return number;
}

QVariant BinaryReader::readReal(unsigned marker, quint64 at) {
    if (marker == 0x22)
        return double{std::bit_cast<float>(static_cast<quint32>(bigEndian(at, 4).value_or(0)))};
    if (marker == 0x23)
        return std::bit_cast<double>(bigEndian(at, 8).value_or(0));
    return {};
}

QVariant BinaryReader::readDate(quint64 at) {
    const double seconds = std::bit_cast<double>(bigEndian(at, 8).value_or(0));
    constexpr double farthest = 1e12;
    if (!(std::abs(seconds) < farthest))
        return {};
    const QDateTime date = QDateTime::fromMSecsSinceEpoch(
        std::llround(seconds * 1000) + referenceDateMilliseconds, utc);
    return propertyListKind(date) == PropertyListKind::Date ? QVariant(date) : QVariant();
}

QString BinaryReader::readUtf16(const Stretch& units) const {
    QString text(static_cast<qsizetype>(units.count), Qt::Uninitialized);
    for (quint64 i = 0; i < units.count; ++i)
        text[static_cast<qsizetype>(i)] =
            QChar(qFromBigEndian<quint16>(bytes_ + units.start + 2 * i));
    return text;
}

/// What follows a marker that tells a count: in its low half, or in an integer behind it.
std::optional<BinaryReader::Stretch> BinaryReader::counted(unsigned marker, quint64 at,
                                                           quint64 unitSize) {
    quint64 count = marker & 0xF;
    if (count == 0xF) {
        const std::optional<quint64> integer = bigEndian(at, 1);
        constexpr quint64 longestCount = 3;
        if (!integer || *integer >> 4 != 1 || (*integer & 0xF) > longestCount) {
            fail(u"A length is no number."_s);
            return std::nullopt;
        }
        const quint64 size = quint64{1} << (*integer & 0xF);
        count = bigEndian(at + 1, size).value_or(0);
        at += 1 + size;
    }
    if (at > end_ || count > (end_ - at) / unitSize) {
        fail(u"A value is longer than the file."_s);
        return std::nullopt;
    }
    return Stretch{at, count};
}

}  // namespace

PropertyListResult readBinaryPropertyList(const QByteArray& data) {
    return BinaryReader(data).document();
}

}  // namespace platform
