#pragma once

#include <QByteArray>
#include <optional>
#include <string_view>

#include "platform/net/content_range.h"
#include "platform/net/http_message.h"

namespace platform {

/// Makes the head of the final response out of the header lines of all responses that an exchange
/// meets: interim ones, a proxy's to CONNECT, those of authentication rounds.
class ResponseHeadReader {
public:
    /// Which challenges the transport answers by itself.
    struct Negotiates {
        bool server = false, proxy = false;
    };
    ResponseHeadReader(const AskedRange& asked, Negotiates negotiates)
        : asked_(asked), negotiates_(negotiates) {}

    /// What has come so far answered the proxy's part; the next head is the server's.
    void requestStarts();
    /// One line with its line break. False: give the exchange up; `refusal` says why, unless
    /// authentication went in circles, where the last challenge stands as the response.
    [[nodiscard]] bool takeLine(std::string_view line);
    /// The head that was kept back, if any, is the final one. False: as for `takeLine`.
    [[nodiscard]] bool bodyStarts();
    /// The same, for an exchange that ended well, or went in circles, or whose proxy asks who we
    /// are.
    void end();

    [[nodiscard]] const std::optional<HTTPResponseHead>& head() const { return head_; }
    /// Why the response cannot be used. Empty: it can.
    [[nodiscard]] const QString& refusal() const { return refusal_; }
    /// Whether that is because a part came that is not the one asked for.
    [[nodiscard]] bool isWrongPart() const { return isWrongPart_; }
    /// Whether anything has come since the request was last sent.
    [[nodiscard]] bool hasSeenAnswer() const { return hasSeenAnswer_; }
    /// What the proxy said when it refused CONNECT. Nothing: it did not.
    [[nodiscard]] const std::optional<HTTPResponseHead>& tunnelRefusal() const;
    /// Whether it would perhaps not refuse somebody whom it knows.
    [[nodiscard]] bool isProxyAsking() const;
    /// Length of the final response's body. Nothing: not announced.
    [[nodiscard]] std::optional<std::uint64_t> announcedLength() const { return announcedLength_; }

private:
    [[nodiscard]] bool takeTrailer(std::string_view line);
    [[nodiscard]] bool endBlock();
    [[nodiscard]] bool refuse(const QString& why);
    [[nodiscard]] bool accept(HTTPResponseHead head);
    [[nodiscard]] QString contradiction(const HTTPResponseHead& head) const;
    [[nodiscard]] bool isAnsweredByTransport(int statusCode) const;

    const AskedRange asked_;
    const Negotiates negotiates_;
    QByteArray block_;
    bool isRequestSent_ = false;
    bool hasSeenAnswer_ = false;
    int rounds_ = 0;
    qsizetype trailerBytes_ = 0;
    std::optional<HTTPResponseHead> proxyHead_, heldHead_, head_;
    std::optional<std::uint64_t> announcedLength_;
    QString refusal_;
    bool isWrongPart_ = false;
};

}  // namespace platform
