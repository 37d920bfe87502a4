#include "platform/net/response_reader.h"

#include <QList>
#include <QStringDecoder>
#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

constexpr qsizetype largestHead = 300 * 1024;
constexpr int mostRounds = 4;

QString decoded(const QByteArray& bytes) {
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8(bytes);
    return utf8.hasError() ? QString::fromLatin1(bytes) : text;
}

QByteArray withoutLineBreak(QByteArray line) {
    if (line.endsWith('\r'))
        line.chop(1);
    return line;
}

/// Lines of a head, those that were folded joined again (RFC 9112, 5.2).
QList<QByteArray> unfoldedLines(const QByteArray& block) {
    QList<QByteArray> lines;
    for (const QByteArray& raw : block.split('\n')) {
        const QByteArray line = withoutLineBreak(raw);
        const bool isFolded = line.startsWith(' ') || line.startsWith('\t');
        if (isFolded && lines.size() > 1)
            lines.last() += ' ' + line.trimmed();
        else if (!line.isEmpty())
            lines.append(line);
    }
    return lines;
}

/// Nothing: no status line at its start.
std::optional<HTTPResponseHead> parseHead(const QByteArray& block) {
    QList<QByteArray> lines = unfoldedLines(block);
    if (lines.isEmpty())
        return std::nullopt;
    const QByteArray statusLine = lines.takeFirst();
    const qsizetype space = statusLine.indexOf(' ');
    bool isNumber = false;
    const int code = statusLine.mid(space + 1, 3).toInt(&isNumber);
    if (space < 0 || !isNumber || code < 100)
        return std::nullopt;
    HTTPResponseHead head;
    head.statusLine = decoded(statusLine);
    head.statusCode = code;
    head.version = statusLine.startsWith("HTTP/1.0") ? HTTPVersion::Http10 : HTTPVersion::Http11;
    for (const QByteArray& line : lines) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0)
            head.headers.add(decoded(line.left(colon).trimmed()),
                             decoded(line.mid(colon + 1).trimmed()));
    }
    return head;
}

/// One for each time that a length is announced.
QStringList announcedLengths(const HTTPHeaders& headers) {
    QStringList lengths;
    for (const QString& field : headers.values(u"Content-Length"_s)) {
        for (const QString& length : field.split(u','))
            lengths.append(length.trimmed());
    }
    return lengths;
}

/// Two different lengths are how a response is smuggled into another's body (RFC 9112, 6.3).
bool hasConflictingLengths(const HTTPHeaders& headers) {
    QStringList lengths = announcedLengths(headers);
    lengths.removeDuplicates();
    return lengths.size() > 1;
}

/// What stands there must be a number that a file can have as its size; else nobody would notice a
/// body that was cut short. A transfer coding overrules them all.
bool hasImpossibleLength(const HTTPHeaders& headers) {
    const QStringList lengths = announcedLengths(headers);
    return !headers.contains(u"Transfer-Encoding"_s) &&
           std::any_of(lengths.begin(), lengths.end(), [](const QString& length) {
               bool isNumber = false;
               static_cast<void>(length.toLongLong(&isNumber));
               return !isNumber || !length.front().isDigit();
           });
}

/// A coding that was not asked for, and would be undone silently.
bool hasForeignTransferCoding(const HTTPHeaders& headers) {
    const QString codings = headers.value(u"Transfer-Encoding"_s).value_or(QString());
    const QStringList list = codings.split(u',', Qt::SkipEmptyParts);
    return std::any_of(list.begin(), list.end(), [](const QString& coding) {
        const QString name = coding.trimmed().toLower();
        return name != "chunked"_L1 && name != "identity"_L1;
    });
}

}  // namespace

void ResponseReader::requestStarts() {
    isRequestSent_ = true;
    hasSeenAnswer_ = false;
    proxyHead_.reset();
}

bool ResponseReader::takeLine(std::string_view line) {
    if (head_)
        return true;  // A trailer.
    hasSeenAnswer_ = true;
    if (line.substr(0, 5) == "HTTP/")
        block_.clear();
    if (block_.size() + static_cast<qsizetype>(line.size()) > largestHead) {
        refusal_ = u"the head of the response is too long"_s;
        return false;
    }
    block_.append(line.data(), static_cast<qsizetype>(line.size()));
    const bool isEnd = line == "\r\n" || line == "\n";
    return !isEnd || endBlock();
}

bool ResponseReader::isAnsweredByTransport(int statusCode) const {
    return (negotiates_.server && statusCode == 401) || (negotiates_.proxy && statusCode == 407);
}

bool ResponseReader::endBlock() {
    auto head = parseHead(block_);
    block_.clear();
    if (!head) {
        refusal_ = u"the server's answer is not HTTP"_s;
        return false;
    }
    if (head->statusCode < 200)
        return true;
    const bool isKeptBack = !isRequestSent_ || isAnsweredByTransport(head->statusCode);
    if (!isKeptBack)
        return accept(std::move(*head));
    head->fromProxy = !isRequestSent_;
    (isRequestSent_ ? heldHead_ : proxyHead_) = std::move(head);
    // A server that closes after each challenge would be asked for ever.
    return ++rounds_ <= mostRounds;
}

bool ResponseReader::accept(HTTPResponseHead head) {
    heldHead_.reset();
    refusal_ = contradiction(head);
    if (!refusal_.isEmpty())
        return false;
    head_ = std::move(head);
    return true;
}

QString ResponseReader::contradiction(const HTTPResponseHead& head) const {
    if (hasConflictingLengths(head.headers))
        return u"the server announced two different lengths"_s;
    if (hasImpossibleLength(head.headers))
        return u"the server announced a length that cannot be"_s;
    if (hasForeignTransferCoding(head.headers))
        return u"the server used a transfer coding that it was not asked for"_s;
    return head.statusCode == 206 ? contradictionOfPartialContent(head.headers, asked_) : QString();
}

bool ResponseReader::bodyStarts() {
    return head_ || (heldHead_ && accept(*std::exchange(heldHead_, {})));
}

void ResponseReader::end() {
    if (isTunnelRefused())
        head_ = std::exchange(proxyHead_, {});
    else if (refusal_.isEmpty())
        static_cast<void>(bodyStarts());
}

bool ResponseReader::isTunnelRefused() const {
    return !isRequestSent_ && proxyHead_ && proxyHead_->statusCode >= 300;
}

std::optional<std::uint64_t> ResponseReader::announcedLength() const {
    if (!head_ || head_->headers.contains(u"Transfer-Encoding"_s))
        return std::nullopt;
    bool isNumber = false;
    const auto length = head_->headers.value(u"Content-Length"_s);
    const qulonglong value = length.value_or(QString()).toULongLong(&isNumber);
    return isNumber ? std::optional<std::uint64_t>(value) : std::nullopt;
}

}  // namespace platform
