#include "platform/net/response_head.h"

#include <QList>
#include <QStringDecoder>
#include <algorithm>
#include <vector>

#include "platform/text/ascii.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

struct Line {
    QByteArray text;
    bool isOdd = false;  ///< Folded, or behind a blank.
};

std::optional<QString> decodedUtf8(const QByteArray& bytes) {
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8(bytes);
    return utf8.hasError() ? std::nullopt : std::optional(text);
}

QString decoded(const QByteArray& bytes) {
    // As nearly all is, and a decoder takes ten times as long.
    if (isAscii(bytes))
        return QString::fromLatin1(bytes);
    return decodedUtf8(bytes).value_or(QString::fromLatin1(bytes));
}

/// What is no text is meant as it is: the next request repeats the bytes.
QString decodedReference(const QByteArray& bytes) {
    if (const auto text = decodedUtf8(bytes))
        return *text;
    QByteArray escaped;
    for (const char byte : bytes)
        escaped +=
            isAscii(byte) ? QByteArray(1, byte) : '%' + QByteArray(1, byte).toHex().toUpper();
    return QString::fromLatin1(escaped);
}

/// Those that were folded joined again.
std::vector<Line> linesOf(const QByteArray& block) {
    std::vector<Line> lines;
    for (QByteArray text : block.split('\n')) {
        if (text.endsWith('\r'))
            text.chop(1);
        const bool beginsBlank = text.startsWith(' ') || text.startsWith('\t');
        if (beginsBlank && lines.size() > 1)
            lines.back() = {lines.back().text + ' ' + text.trimmed(), true};
        else if (!text.isEmpty())
            lines.push_back({text, beginsBlank});
    }
    return lines;
}

/// Nothing: it is no status line.
std::optional<HTTPResponseHead> headOfStatusLine(const QByteArray& line) {
    const qsizetype space = line.indexOf(' ');
    bool isNumber = false;
    const int code = line.mid(space + 1, 3).toInt(&isNumber);
    if (space < 0 || !isNumber || code < 100)
        return std::nullopt;
    HTTPResponseHead head;
    head.statusLine = decoded(line);
    head.statusCode = code;
    head.version = line.startsWith("HTTP/1.0") ? HTTPVersion::Http10 : HTTPVersion::Http11;
    return head;
}

bool isFraming(const QByteArray& name) {
    return name.compare("Transfer-Encoding", Qt::CaseInsensitive) == 0 ||
           name.compare("Content-Length", Qt::CaseInsensitive) == 0;
}

bool isLocation(const QByteArray& name) {
    return name.compare("Location", Qt::CaseInsensitive) == 0;
}

}  // namespace

std::optional<ReadHead> readHead(const QByteArray& block) {
    const std::vector<Line> lines = linesOf(block);
    auto head = lines.empty() ? std::nullopt : headOfStatusLine(lines.front().text);
    if (!head)
        return std::nullopt;
    ReadHead result{std::move(*head), false};
    for (std::size_t i = 1; i < lines.size(); ++i) {
        const Line& line = lines[i];
        const qsizetype colon = line.text.indexOf(':');
        if (colon <= 0)
            continue;
        const QByteArray name = line.text.left(colon).trimmed();
        const QByteArray value = line.text.mid(colon + 1).trimmed();
        const bool isOdd = line.isOdd || name.size() != colon;
        result.isFramingDoubtful = result.isFramingDoubtful || (isOdd && isFraming(name));
        result.head.headers.add(decoded(name),
                                isLocation(name) ? decodedReference(value) : decoded(value));
    }
    return result;
}

}  // namespace platform
