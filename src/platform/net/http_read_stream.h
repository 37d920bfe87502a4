#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/base/error.h"
#include "platform/net/http_message.h"

namespace platform {

class NetworkLoop;

/// Error domains of a stream.
inline const QString networkErrorDomain = QStringLiteral("kCFErrorDomainCFNetwork");
inline const QString securityErrorDomain = QStringLiteral("NSOSStatusErrorDomain");

/// Codes of networkErrorDomain.
enum NetworkErrorCode {
    networkErrorConnectionLost = -1005,
    networkErrorHostNotFound = -1003,
    networkErrorCannotConnect = -1004,
    networkErrorTimedOut = -1001,
    networkErrorBadServerResponse = -1011,
    networkErrorRefused = -1013,      ///< Nobody listens at the server's port.
    networkErrorCutShort = -1014,     ///< A body ended before it was whole.
    networkErrorWrongPart = -1015,    ///< A part came that is not the one asked for.
    networkErrorProxySettings = 307,  ///< Nobody can tell which proxy they mean.
    networkErrorProxyRefused = 306,   ///< It would not lead on to the server.
    networkErrorProxyNotFound = 310,
};
/// Codes of securityErrorDomain lie from -9818 to -9800.
enum SecurityErrorCode {
    securityErrorHandshake = -9800,
    securityErrorCertificate = -9807,  ///< For another reason than those below.
    securityErrorCertificateOfOtherHost = -9808,
    securityErrorCertificateExpired = -9814,
    securityErrorCertificateNotYetValid = -9815,
    securityErrorClientCertificate = -9801,
};

/// The socket that several requests in turn share. Requests of one identity never run at the same
/// time and go to one scheme, host, port and proxy; the owner sees to both.
///
/// Network loop's thread only.
class HTTPConnectionIdentity {
public:
    explicit HTTPConnectionIdentity(NetworkLoop& loop);
    ~HTTPConnectionIdentity();
    HTTPConnectionIdentity(const HTTPConnectionIdentity&) = delete;

    class Private;
    [[nodiscard]] Private& internals() { return *private_; }

private:
    std::unique_ptr<Private> private_;
};

/// Where a request's body comes from. Network loop's thread only.
class HTTPBodySource {
public:
    virtual ~HTTPBodySource() = default;
    enum class State { Data, NotNow, End, Failed };
    struct Piece {
        State state = State::End;
        qsizetype count = 0;
    };
    /// Fills up to `maximum` bytes, at least one with Data. NotNow: ask again after
    /// `HTTPReadStream::resumeBody`. Must leave the stream alone.
    virtual Piece read(char* buffer, qsizetype maximum) = 0;
    /// Starts over from the first byte. False: cannot.
    virtual bool rewind() = 0;
};

struct HTTPProxy {
    /// Https: spoken to as Http, but over TLS.
    enum class Kind { None, Http, Https, Socks4, Socks5 };
    Kind kind = Kind::None;
    QString host;
    int port = 0;
    /// Empty for none. The stream sends them by SOCKS only; to the others they are a header's.
    QString user, password;

    [[nodiscard]] bool speaksHTTP() const { return kind == Kind::Http || kind == Kind::Https; }
};

/// What a TLS connection presents and demands.
struct TLSSettings {
    bool validatesCertificate = true;
    /// PEM files; empty for none.
    QString clientCertificatePath, clientKeyPath;
    /// A PEM bundle instead of the system's authorities; empty for what the environment's
    /// SSL_CERT_FILE names, else the system's.
    QString authoritiesPath;
};

/// Schemes that the transport negotiates by itself, because they belong to a connection.
enum class ConnectionAuthentication { None, Ntlm, Negotiate };
struct ConnectionCredentials {
    ConnectionAuthentication scheme = ConnectionAuthentication::None;
    QString user, password, domain;
};

/// One HTTP exchange: sends a message, yields the response's head and body. Does not follow
/// redirects, decodes no content coding, times out for nothing, uses no proxy but the one given.
///
/// A body shorter than its announced length, a missing last chunk, and a 206 whose "Content-Range"
/// does not begin at the byte asked for or contradicts the range asked for are errors of the
/// stream; nothing of such a 206 is yielded.
///
/// Network loop's thread only. The client may close or destroy the stream from inside its events.
class HTTPReadStream {
public:
    enum class Event { BytesAvailable, Error, End };
    using Client = std::function<void(Event)>;

    /// `body`: none, or where the body comes from, which must outlive the stream; `bodyLength`
    /// bytes are announced and sent.
    HTTPReadStream(NetworkLoop& loop, HTTPRequestMessage message, HTTPBodySource* body = nullptr,
                   std::uint64_t bodyLength = 0);
    ~HTTPReadStream();
    HTTPReadStream(const HTTPReadStream&) = delete;
    HTTPReadStream& operator=(const HTTPReadStream&) = delete;

    // Before `open`.
    void setTLSSettings(const TLSSettings& settings);
    void setProxy(const HTTPProxy& proxy);
    void setServerCredentials(const ConnectionCredentials& credentials);
    void setProxyCredentials(const ConnectionCredentials& credentials);
    /// Null: a socket of its own that is closed at the end.
    void setConnection(HTTPConnectionIdentity* identity);
    void setClient(Client client);

    /// Begins. Events come on later turns of the loop, and only while scheduled. False: the message
    /// cannot be sent at all.
    bool open();
    /// No event after this. A connection with an identity survives only if the body was read whole.
    void close();

    /// An unscheduled stream takes nothing from its socket beyond a bounded buffer and reports
    /// nothing; it is scheduled at first unless `unschedule` comes before `open`.
    void schedule();
    void unschedule();
    [[nodiscard]] bool isScheduled() const;

    [[nodiscard]] bool hasBytesAvailable() const;
    /// The next bytes of the body, at most `maximum`, in whole gathered blocks where possible and
    /// without a copy: 256 KiB once the body flows. Empty: none now. A block is filled again when
    /// nobody holds it any more; whoever changes one gets a copy.
    [[nodiscard]] QByteArray read(qsizetype maximum);
    /// Lets other streams have their turn after each read, however much lies ready here.
    void setSharesTurns(bool shares);

    /// Nothing before the head is complete.
    [[nodiscard]] const std::optional<HTTPResponseHead>& responseHead() const;
    /// Set after Event::Error.
    [[nodiscard]] const std::optional<Error>& error() const;
    /// Bytes of the body that have been sent.
    [[nodiscard]] std::uint64_t bodyBytesWritten() const;
    void resumeBody();
    /// Whether the exchange went over a socket that an earlier one had opened.
    [[nodiscard]] bool usedExistingConnection() const;

    class Private;

private:
    std::unique_ptr<Private> private_;
};

}  // namespace platform
