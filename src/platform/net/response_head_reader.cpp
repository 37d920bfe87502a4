#include "platform/net/response_head_reader.h"

#include <QStringList>

#include "platform/net/body_framing.h"
#include "platform/net/response_head.h"
#include "platform/net/status_codes.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

constexpr qsizetype largestHead = 300LL * 1024;
constexpr int mostRounds = 4;

/// Several that differ: whoever believes one of them may have been meant to believe the other.
bool contradictsItself(const HTTPHeaders& headers, const QString& name) {
    QStringList values = headers.values(name);
    values.removeDuplicates();
    return values.size() > 1;
}

}  // namespace

void ResponseHeadReader::requestStarts() {
    isRequestSent_ = true;
    hasSeenAnswer_ = false;
    block_.clear();
    proxyHead_.reset();
}

bool ResponseHeadReader::refuse(const QString& why) {
    refusal_ = why;
    return false;
}

bool ResponseHeadReader::takeLine(std::string_view line) {
    if (head_)
        return takeTrailer(line);
    hasSeenAnswer_ = true;
    if (block_.size() + static_cast<qsizetype>(line.size()) > largestHead)
        return refuse(u"the head of the response is too long"_s);
    block_.append(line.data(), static_cast<qsizetype>(line.size()));
    const bool isEnd = line == "\r\n" || line == "\n";
    return !isEnd || endBlock();
}

/// Nobody wants one, but libcurl keeps them all.
bool ResponseHeadReader::takeTrailer(std::string_view line) {
    trailerBytes_ += static_cast<qsizetype>(line.size());
    return trailerBytes_ <= largestHead || refuse(u"what follows the body does not end"_s);
}

bool ResponseHeadReader::isAnsweredByTransport(int statusCode) const {
    return (negotiates_.server && statusCode == status::unauthorized) ||
           (negotiates_.proxy && statusCode == status::proxyAuthenticationRequired);
}

bool ResponseHeadReader::endBlock() {
    auto read = readHead(std::exchange(block_, {}));
    if (!read)
        return refuse(u"the server's answer is not HTTP"_s);
    if (read->head.statusCode < status::ok)
        return true;
    if (read->isFramingDoubtful && isRequestSent_)
        return refuse(u"the server did not say clearly where its answer ends"_s);
    auto head = std::optional(std::move(read->head));
    const bool isKeptBack = !isRequestSent_ || isAnsweredByTransport(head->statusCode);
    if (!isKeptBack)
        return accept(std::move(*head));
    head->fromProxy = !isRequestSent_;
    (isRequestSent_ ? heldHead_ : proxyHead_) = std::move(head);
    // A server that closes after each challenge would be asked for ever.
    return ++rounds_ <= mostRounds;
}

bool ResponseHeadReader::accept(HTTPResponseHead head) {
    heldHead_.reset();
    if (const QString why = contradiction(head); !why.isEmpty())
        return refuse(why);
    if (head.statusCode == status::partialContent) {
        const QString why = contradictionOfPartialContent(head.headers, asked_);
        isWrongPart_ = !why.isEmpty();
        if (isWrongPart_)
            return refuse(why);
    }
    announcedLength_ = announcedBodyLength(head.headers);
    head_ = std::move(head);
    return true;
}

QString ResponseHeadReader::contradiction(const HTTPResponseHead& head) const {
    if (const QString why = contradictionOfFraming(head.headers); !why.isEmpty())
        return why;
    if (contradictsItself(head.headers, u"Location"_s))
        return u"the server named two different addresses"_s;
    if (contradictsItself(head.headers, u"Content-Range"_s))
        return u"the server named two different parts"_s;
    return {};
}

bool ResponseHeadReader::bodyStarts() {
    return head_ || (heldHead_ && accept(*std::exchange(heldHead_, {})));
}

void ResponseHeadReader::end() {
    if (isProxyAsking())
        head_ = std::exchange(proxyHead_, {});
    else if (refusal_.isEmpty())
        static_cast<void>(bodyStarts());
}

const std::optional<HTTPResponseHead>& ResponseHeadReader::tunnelRefusal() const {
    static const std::optional<HTTPResponseHead> none;
    const bool isRefused = !isRequestSent_ && proxyHead_ && proxyHead_->statusCode >= 300;
    return isRefused ? proxyHead_ : none;
}

bool ResponseHeadReader::isProxyAsking() const {
    return tunnelRefusal() && tunnelRefusal()->statusCode == status::proxyAuthenticationRequired;
}

}  // namespace platform
