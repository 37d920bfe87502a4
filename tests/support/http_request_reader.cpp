#include "support/http_request_reader.h"

#include <QList>
#include <algorithm>

namespace support {

namespace {

constexpr qsizetype largestHead = 1 << 20;
constexpr qsizetype largestBody = 256 << 20;

bool sameName(const std::string& a, const std::string& b) {
    return QByteArray::fromStdString(a).compare(b.c_str(), Qt::CaseInsensitive) == 0;
}

}  // namespace

std::optional<std::string> ReceivedRequest::header(const std::string& name) const {
    const auto found = std::find_if(headers.begin(), headers.end(), [&name](const auto& field) {
        return sameName(field.first, name);
    });
    return found == headers.end() ? std::nullopt : std::optional(found->second);
}

bool HTTPRequestReader::receiveMore() {
    const QByteArray more = peer_.read();
    pending_ += more;
    return !more.isEmpty();
}

QByteArray HTTPRequestReader::takeThrough(const QByteArray& end) {
    qsizetype at = -1;
    while ((at = pending_.indexOf(end)) < 0) {
        if (pending_.size() > largestHead || !receiveMore())
            return {};
    }
    const QByteArray taken = pending_.left(at + end.size());
    pending_.remove(0, taken.size());
    return taken;
}

std::optional<ReceivedRequest> HTTPRequestReader::readHead() {
    ReceivedRequest request;
    request.raw = takeThrough(QByteArrayLiteral("\r\n\r\n"));
    QList<QByteArray> lines = request.raw.split('\n');
    const QList<QByteArray> first = lines.takeFirst().trimmed().split(' ');
    if (first.size() != 3)
        return std::nullopt;
    request.method = first[0].toStdString();
    request.target = first[1].toStdString();
    request.version = first[2].toStdString();
    for (const QByteArray& line : lines) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0)
            request.headers.emplace_back(line.left(colon).toStdString(),
                                         line.mid(colon + 1).trimmed().toStdString());
    }
    return request;
}

bool HTTPRequestReader::readBody(ReceivedRequest& request) {
    const auto length = request.header("Content-Length");
    return !length || appendExactly(request.body, QByteArray::fromStdString(*length).toLongLong());
}

bool HTTPRequestReader::appendExactly(QByteArray& target, qsizetype count) {
    if (count < 0 || target.size() + count > largestBody)
        return false;
    while (count > 0) {
        if (pending_.isEmpty() && !receiveMore())
            return false;
        const qsizetype taken = std::min(count, pending_.size());
        target += pending_.left(taken);
        pending_.remove(0, taken);
        count -= taken;
    }
    return true;
}

}  // namespace support
