#pragma once

#include <array>
#include <memory>
#include <optional>

#include "platform/net/body_feed.h"
#include "platform/net/http_connection_identity_private.h"
#include "platform/net/http_read_stream.h"
#include "platform/net/network_loop_private.h"
#include "platform/net/receive_buffer.h"
#include "platform/net/response_head_reader.h"
#include "platform/net/transfer_error.h"
#include "platform/net/transfer_options.h"

namespace platform {

/// The exchange behind a stream. libcurl's callbacks only note what has come; the client is told
/// outside of them, by `deliver`.
class HTTPReadStream::Private final : public DrivenExchange {
public:
    Private(NetworkLoop& loop, HTTPRequestMessage message, HTTPBodySource* body,
            std::uint64_t bodyLength);
    ~Private() override;

    bool open();
    void close();
    void schedule();
    void unschedule();
    [[nodiscard]] QByteArray read(qsizetype maximum);
    void resumeBody();
    [[nodiscard]] std::uint64_t bodyBytesWritten() const;

    void transferEnded(CURLcode result) override;
    [[nodiscard]] bool settle(bool isQuiet) override;
    void deliver() override;
    void loopEnds() override;

    TransferSetup setup;
    HTTPConnectionIdentity* identity = nullptr;
    std::shared_ptr<Client> client;
    bool isScheduled = true;
    bool sharesTurns = false;  ///< No more than one event in each turn of the loop.
    ReceiveBuffer buffer;
    std::optional<HTTPResponseHead> responseHead;
    std::optional<Error> error;
    bool usedExistingConnection = false;

private:
    [[nodiscard]] bool setCallbacks();
    [[nodiscard]] std::size_t takeHeaderLine(std::string_view line);
    [[nodiscard]] std::size_t takeBody(const char* bytes, std::size_t count);
    [[nodiscard]] std::size_t giveBody(char* target, std::size_t maximum);
    [[nodiscard]] curl_socket_t openSocket(const curl_sockaddr& address);
    /// `localPort`: of the connection over which it goes.
    void requestStarts(int localPort);
    void lookBehindBody();
    void securesConnection(void* context);

    [[nodiscard]] std::optional<Error> whatWentWrong(CURLcode result) const;
    [[nodiscard]] TransferResult resultOf(CURLcode code) const;
    [[nodiscard]] bool hasBody() const;
    [[nodiscard]] bool isBodyWhole() const;
    [[nodiscard]] bool isEndDoubtful() const;
    /// Looks now and then.
    [[nodiscard]] bool isFlooded();
    [[nodiscard]] bool hasNews() const;
    /// Pauses and resumes both directions as far as they ought to be.
    void updatePause();
    void pause(bool receive, bool send);
    /// False: the stream died in it.
    bool tell(Event event);
    void releaseHandle();

    NetworkLoop::Private* loop_;
    const std::weak_ptr<const void> loopLife_;
    // The handle refers to both.
    std::shared_ptr<KeptConnection> kept_;  ///< Null: a connection of its own.
    std::optional<RequestLines> lines_;
    std::shared_ptr<const TLSEnd> tlsEnd_;  ///< Null: not over TLS, so far.
    CurlEasy easy_{nullptr, &curl_easy_cleanup};
    BodyFeed body_;
    std::optional<ResponseHeadReader> reader_;
    std::array<char, CURL_ERROR_SIZE> reason_{};
    /// Expires when the object dies.
    std::shared_ptr<char> life_ = std::make_shared<char>();

    bool isOpen_ = false;
    bool isEnded_ = false;        ///< libcurl has finished.
    bool isEndReported_ = false;  ///< So has the client heard.
    bool isDelivering_ = false;
    bool hasRead_ = false;        ///< Since the last event.
    bool hasConnection_ = false;  ///< Pausing has an effect only then.
    bool isReceivePaused_ = false;
    bool isSendPaused_ = false;
    bool isGivenUp_ = false;  ///< By a callback of ours.
    bool isRetryRefused_ = false;
    bool isFlooded_ = false;
    unsigned looksForFlood_ = 0;
    /// What had come over the connection without being body when it was first looked at.
    std::optional<std::uint64_t> besideBody_;
    std::vector<curl_socket_t> opened_;     ///< Those tried for the connection.
    curl_socket_t wire_ = CURL_SOCKET_BAD;  ///< Of the request that was sent last.
    int socketsOpened_ = 0;                 ///< Since the request was last sent.
    int deferrals_ = 0;
    std::uint64_t bodyBytesWritten_ = 0;
    std::uint64_t bodyBytesReceived_ = 0;
};

}  // namespace platform
