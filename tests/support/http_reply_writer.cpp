#include "support/http_reply_writer.h"

#include <QRegularExpression>
#include <algorithm>

namespace support {

namespace {

std::optional<std::string> fieldNamed(
    const std::vector<std::pair<std::string, std::string>>& fields, const char* name) {
    for (const auto& [key, value] : fields) {
        if (QByteArray::fromStdString(key).compare(name, Qt::CaseInsensitive) == 0)
            return value;
    }
    return std::nullopt;
}

struct Span {
    qsizetype first, last;
};

/// Nothing: not a single range of bytes. An empty span: outside of `total`.
std::optional<Span> parseRange(const std::string& text, qsizetype total) {
    static const QRegularExpression form(QStringLiteral("^bytes=(\\d*)-(\\d*)$"));
    const auto match = form.match(QString::fromStdString(text));
    const QString first = match.captured(1);
    const QString last = match.captured(2);
    if (!match.hasMatch() || (first.isEmpty() && last.isEmpty()))
        return std::nullopt;
    if (first.isEmpty())
        return Span{std::max<qsizetype>(0, total - last.toLongLong()), total - 1};
    return Span{first.toLongLong(),
                last.isEmpty() ? total - 1 : std::min<qsizetype>(last.toLongLong(), total - 1)};
}

}  // namespace

HTTPReplyWriter::HTTPReplyWriter(Peer& peer, const ReceivedRequest& request, const Reply& reply,
                                 std::function<bool()> waitForRelease)
    : peer_(peer),
      request_(request),
      reply_(reply),
      waitForRelease_(std::move(waitForRelease)),
      status_(reply.status),
      body_(reply.body) {
    applyRange();
}

bool HTTPReplyWriter::rangeStillApplies() const {
    const auto condition = request_.header("If-Range");
    return !condition || condition == fieldNamed(reply_.headers, "ETag") ||
           condition == fieldNamed(reply_.headers, "Last-Modified");
}

void HTTPReplyWriter::refuseRange() {
    status_ = 416;
    rangeHeaders_.emplace_back("Content-Range", "bytes */" + std::to_string(body_.size()));
    body_.clear();
}

void HTTPReplyWriter::applyRange() {
    const auto asked = request_.header("Range");
    if (!asked || reply_.status != 200 || reply_.ranges == Reply::Ranges::Ignore ||
        !rangeStillApplies())
        return;
    const auto span = parseRange(*asked, body_.size());
    if (!span)
        return;
    if (span->first > span->last) {
        refuseRange();
        return;
    }
    const qsizetype shift = reply_.ranges == Reply::Ranges::WrongOffset ? 1 : 0;
    const qsizetype total = body_.size() + (reply_.ranges == Reply::Ranges::WrongTotal ? 1 : 0);
    status_ = 206;
    rangeHeaders_.emplace_back("Content-Range", "bytes " + std::to_string(span->first + shift) +
                                                    "-" + std::to_string(span->last + shift) + "/" +
                                                    std::to_string(total));
    body_ = body_.mid(span->first, span->last - span->first + 1);
}

bool HTTPReplyWriter::isChunked() const {
    return reply_.length == Reply::Length::Chunked;
}

bool HTTPReplyWriter::hasBody() const {
    return request_.method != "HEAD" && status_ >= 200 && status_ != 204 && status_ != 304;
}

bool HTTPReplyWriter::keepsAlive() const {
    const auto wish = request_.header("Connection");
    const bool asksToClose = wish && QByteArray::fromStdString(*wish).toLower() == "close";
    const bool isOld = request_.version == "HTTP/1.0" && wish != "keep-alive";
    return reply_.keepAlive && !asksToClose && !isOld && reply_.length != Reply::Length::None;
}

QByteArray HTTPReplyWriter::head() const {
    Headers fields;
    if (reply_.length == Reply::Length::Announce && status_ != 204 && status_ != 304)
        fields.emplace_back("Content-Length", std::to_string(body_.size()));
    if (isChunked())
        fields.emplace_back("Transfer-Encoding", "chunked");
    if (reply_.announceRanges)
        fields.emplace_back("Accept-Ranges", "bytes");
    if (!keepsAlive())
        fields.emplace_back("Connection", "close");
    fields.insert(fields.end(), rangeHeaders_.begin(), rangeHeaders_.end());
    fields.insert(fields.end(), reply_.headers.begin(), reply_.headers.end());
    std::string text = "HTTP/1.1 " + std::to_string(status_) + " OK\r\n";
    for (const auto& [name, value] : fields)
        text += name + ": " + value + "\r\n";
    return QByteArray::fromStdString(text + "\r\n");
}

bool HTTPReplyWriter::send() {
    if (reply_.stallHead && !waitForRelease_())
        return false;
    if (reply_.raw)
        return peer_.write(*reply_.raw) && reply_.keepAlive;
    if (!peer_.write(head()))
        return false;
    if (hasBody() && !sendBody()) {
        if (reply_.resetConnection)
            peer_.resetOnClose();
        return false;
    }
    return keepsAlive();
}

bool HTTPReplyWriter::sendBody() {
    constexpr qsizetype slicesPerSecond = 50;
    constexpr std::chrono::milliseconds sliceTime(1000 / slicesPerSecond);
    const qsizetype cut = reply_.cutAfter ? static_cast<qsizetype>(*reply_.cutAfter) : -1;
    qsizetype stall = reply_.stallAfter ? static_cast<qsizetype>(*reply_.stallAfter) : -1;
    qsizetype slice = 65536;
    if (reply_.rate > 0)
        slice =
            std::clamp<qsizetype>(static_cast<qsizetype>(reply_.rate) / slicesPerSecond, 1, slice);
    qsizetype sent = 0;
    for (;;) {
        if (sent == cut)
            return false;
        if (sent == stall) {
            if (!waitForRelease_())
                return false;
            stall = -1;
        }
        qsizetype count = std::min(slice, body_.size() - sent);
        if (cut > sent)
            count = std::min(count, cut - sent);
        if (stall > sent)
            count = std::min(count, stall - sent);
        if (count == 0)
            return !isChunked() || peer_.write(QByteArrayLiteral("0\r\n\r\n"));
        if (!sendPiece(body_.constData() + sent, count) ||
            (reply_.rate > 0 && !peer_.pause(sliceTime)))
            return false;
        sent += count;
    }
}

bool HTTPReplyWriter::sendPiece(const char* bytes, qsizetype count) {
    if (!isChunked())
        return peer_.write(bytes, count);
    return peer_.write(QByteArray::number(count, 16) + QByteArrayLiteral("\r\n")) &&
           peer_.write(bytes, count) && peer_.write(QByteArrayLiteral("\r\n"));
}

}  // namespace support
