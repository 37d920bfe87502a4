#include <QDateTime>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <vector>

#include "platform/files/property_list_kinds.h"
#include "platform/files/xml_property_list.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

bool isBeyondXml(QChar unit) {
    return (unit < u' ' && unit != u'\t' && unit != u'\n' && unit != u'\r') || unit >= u'\uFFFE';
}

/// The text in UTF-8, without the characters that XML cannot carry.
QByteArray carriedText(const QString& text) {
    if (std::none_of(text.begin(), text.end(), isBeyondXml))
        return text.toUtf8();
    QString carried = text;
    std::replace_if(carried.begin(), carried.end(), isBeyondXml, QChar::ReplacementCharacter);
    return carried.toUtf8();
}

struct Entry {
    QByteArray key;
    const QVariant* value;
};

/// Maps sort by UTF-16 units, which is another order where surrogate pairs occur. Of keys that have
/// become equal only one is written.
std::vector<Entry> sortedEntries(const QVariantMap& map) {
    std::vector<Entry> entries;
    entries.reserve(static_cast<std::size_t>(map.size()));
    for (auto entry = map.begin(); entry != map.end(); ++entry)
        entries.push_back({carriedText(entry.key()), &entry.value()});
    const auto before = [](const Entry& a, const Entry& b) { return a.key < b.key; };
    if (!std::is_sorted(entries.begin(), entries.end(), before))
        std::stable_sort(entries.begin(), entries.end(), before);
    const auto areEqual = [](const Entry& a, const Entry& b) { return a.key == b.key; };
    entries.erase(std::unique(entries.begin(), entries.end(), areEqual), entries.end());
    return entries;
}

constexpr char documentHead[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";
constexpr char documentTail[] = "</plist>\n";

class XmlWriter {
public:
    XmlWriter() {
        constexpr qsizetype firstBlock = 4LL * 1024;
        out_.reserve(firstBlock);
    }

    /// Empty: the value cannot be written.
    [[nodiscard]] QByteArray document(const QVariant& value) {
        out_ += documentHead;
        if (!write(value, 0))
            return {};
        out_ += documentTail;
        return std::move(out_);
    }

    [[nodiscard]] QByteArray element(const QVariant& value) {
        // Many of them are kept, so none has room to spare.
        return write(value, 1) ? QByteArray(out_.constData(), out_.size()) : QByteArray();
    }

private:
    bool write(const QVariant& value, int depth);
    bool writeDictionary(const QVariantMap& map, int depth);
    bool writeArray(const QVariantList& list, int depth);
    void writeData(const QByteArray& data, int depth);
    void writeReal(double number);

    void writeElement(const char* name, const QByteArray& text) {
        out_.append('<').append(name).append('>');
        appendEscaped(text);
        out_.append("</").append(name).append(">\n");
    }
    void appendEscaped(const QByteArray& text);
    void indent(int depth) { out_.append(depth, '\t'); }

    QByteArray out_;
};

bool XmlWriter::write(const QVariant& value, int depth) {
    if (depth >= deepestPropertyList)
        return false;
    indent(depth);
    switch (propertyListKind(value)) {
        case PropertyListKind::None:
            return false;
        case PropertyListKind::Dictionary:
            return writeDictionary(*static_cast<const QVariantMap*>(value.constData()), depth);
        case PropertyListKind::Array:
            return writeArray(value.toList(), depth);
        case PropertyListKind::String:
            writeElement("string", carriedText(*static_cast<const QString*>(value.constData())));
            break;
        case PropertyListKind::Integer:
            writeElement("integer", value.toString().toLatin1());
            break;
        case PropertyListKind::Real:
            writeReal(value.toDouble());
            break;
        case PropertyListKind::Boolean:
            out_ += value.toBool() ? "<true/>\n" : "<false/>\n";
            break;
        case PropertyListKind::Data:
            writeData(value.toByteArray(), depth);
            break;
        case PropertyListKind::Date:
            writeElement(
                "date",
                value.toDateTime().toUTC().toString(u"yyyy-MM-dd'T'HH:mm:ss'Z'").toLatin1());
            break;
    }
    return true;
}

bool XmlWriter::writeDictionary(const QVariantMap& map, int depth) {
    if (map.isEmpty()) {
        out_ += "<dict/>\n";
        return true;
    }
    out_ += "<dict>\n";
    for (const Entry& entry : sortedEntries(map)) {
        indent(depth + 1);
        writeElement("key", entry.key);
        if (!write(*entry.value, depth + 1))
            return false;
    }
    indent(depth);
    out_ += "</dict>\n";
    return true;
}

bool XmlWriter::writeArray(const QVariantList& list, int depth) {
    if (list.isEmpty()) {
        out_ += "<array/>\n";
        return true;
    }
    out_ += "<array>\n";
    for (const QVariant& element : list) {
        if (!write(element, depth + 1))
            return false;
    }
    indent(depth);
    out_ += "</array>\n";
    return true;
}

void XmlWriter::writeData(const QByteArray& data, int depth) {
    constexpr qsizetype lineLength = 76;
    out_ += "<data>\n";
    const QByteArray text = data.toBase64();
    for (qsizetype start = 0; start < text.size(); start += lineLength) {
        indent(depth);
        out_.append(text.constData() + start, std::min(lineLength, text.size() - start));
        out_ += '\n';
    }
    indent(depth);
    out_ += "</data>\n";
}

void XmlWriter::writeReal(double number) {
    if (std::isnan(number)) {
        writeElement("real", "nan");
    } else if (std::isinf(number)) {
        writeElement("real", number > 0 ? "+infinity" : "-infinity");
    } else {
        std::array<char, 32> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        writeElement("real", QByteArray(digits.data(), end - digits.data()));
    }
}

/// What stands for a byte of UTF-8 text; null: itself.
const char* replacementFor(char byte) {
    switch (byte) {
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '&':
            return "&amp;";
        case '\r':
            return "&#13;";  // A reader turns a bare one into a line feed.
        default:
            return nullptr;
    }
}

void XmlWriter::appendEscaped(const QByteArray& text) {
    const char* run = text.constData();
    const char* const end = run + text.size();
    for (const char* byte = run; byte != end; ++byte) {
        if (const char* const replacement = replacementFor(*byte)) {
            out_.append(run, byte - run).append(replacement);
            run = byte + 1;
        }
    }
    out_.append(run, end - run);
}

}  // namespace

QByteArray writeXmlPropertyList(const QVariant& value) {
    return XmlWriter().document(value);
}

QByteArray propertyListElement(const QVariant& value) {
    return XmlWriter().element(value);
}

std::vector<QByteArray> propertyListOfElements(std::vector<QByteArray> elements) {
    elements.reserve(elements.size() + 2);
    elements.insert(elements.begin(), QByteArray(documentHead) + "<array>\n");
    elements.push_back(QByteArray("</array>\n") + documentTail);
    return elements;
}

}  // namespace platform
