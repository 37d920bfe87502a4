#include "platform/net/transfer_options.h"

#include <QFile>
#include <QHostAddress>
#include <algorithm>
#include <limits>

#include "platform/net/authorities.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

/// Sets options one after the other and remembers whether one was refused.
class EasyOptions {
public:
    explicit EasyOptions(CURL* easy) : easy_(easy) {}

    template <typename Value>
    void set(CURLoption option, Value value) {
        succeeded_ = curl_easy_setopt(easy_, option, value) == CURLE_OK && succeeded_;
    }
    void set(CURLoption option, const QString& text) {
        const QByteArray bytes = text.toUtf8();
        set(option, bytes.constData());
    }
    void setPath(CURLoption option, const QString& path) {
        if (!path.isEmpty())
            set(option, QFile::encodeName(path).constData());
    }
    [[nodiscard]] bool succeeded() const { return succeeded_; }

private:
    CURL* const easy_;
    bool succeeded_ = true;
};

void applyMessage(EasyOptions& options, const TransferSetup& setup, const RequestLines& lines) {
    const HTTPRequestMessage& message = setup.message;
    options.set(CURLOPT_URL, message.url.forTransfer().absoluteString());
    options.set(CURLOPT_PATH_AS_IS, 1L);
    options.set(CURLOPT_PROTOCOLS_STR, "http,https");
    options.set(CURLOPT_HTTP_VERSION, message.version == HTTPVersion::Http10
                                          ? long{CURL_HTTP_VERSION_1_0}
                                          : long{CURL_HTTP_VERSION_1_1});
    if (message.method == "HEAD"_L1)
        options.set(CURLOPT_NOBODY, 1L);
    else
        options.set(CURLOPT_CUSTOMREQUEST, message.method);
    options.set(CURLOPT_HTTPHEADER, lines.server.get());
    options.set(CURLOPT_HEADEROPT, long{CURLHEADER_SEPARATE});
    options.set(CURLOPT_PROXYHEADER, lines.proxy.get());
    if (setup.bodyLength) {
        constexpr std::uint64_t smallestBuffer = 16UL * 1024, largestBuffer = 256UL * 1024;
        options.set(CURLOPT_UPLOAD, 1L);
        options.set(CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(*setup.bodyLength));
        options.set(
            CURLOPT_UPLOAD_BUFFERSIZE,
            static_cast<long>(std::clamp(*setup.bodyLength, smallestBuffer, largestBuffer)));
    }
}

void applyConnection(EasyOptions& options, const TransferSetup& setup) {
    options.set(CURLOPT_NOSIGNAL, 1L);
    // Else giving up a transfer waits for a name look-up that may take seconds.
    options.set(CURLOPT_QUICK_EXIT, 1L);
    options.set(CURLOPT_CONNECTTIMEOUT_MS, long{std::numeric_limits<int>::max()});
    options.set(CURLOPT_TCP_KEEPALIVE, 1L);
    options.set(CURLOPT_BUFFERSIZE, receiveBufferSize(setup));
    if (setup.sharedConnections != nullptr) {
        options.set(CURLOPT_SHARE, setup.sharedConnections);
    } else {
        options.set(CURLOPT_FRESH_CONNECT, 1L);
        options.set(CURLOPT_FORBID_REUSE, 1L);
    }
}

QString authoritiesPath(const TLSSettings& tls) {
    if (!tls.authoritiesPath.isEmpty())
        return tls.authoritiesPath;
    // The variable by which other programs on OpenSSL are told of a company's own authority.
    const QString ofUser = qEnvironmentVariable("SSL_CERT_FILE");
    return ofUser.isEmpty() ? systemAuthorities() : ofUser;
}

void applyTLS(EasyOptions& options, const TLSSettings& tls) {
    options.set(CURLOPT_SSL_ENABLE_ALPN, 0L);
    if (!tls.validatesCertificate) {
        options.set(CURLOPT_SSL_VERIFYPEER, 0L);
        options.set(CURLOPT_SSL_VERIFYHOST, 0L);
    }
    options.setPath(CURLOPT_CAINFO, authoritiesPath(tls));
    options.setPath(CURLOPT_SSLCERT, tls.clientCertificatePath);
    options.setPath(CURLOPT_SSLKEY, tls.clientKeyPath);
}

bool isIPv6Address(const QString& host) {
    return QHostAddress(host).protocol() == QAbstractSocket::IPv6Protocol;
}

/// With names looked up by the proxy, which may be the only one that can.
long proxyType(const HTTPProxy& proxy, const QString& targetHost) {
    switch (proxy.kind) {
        case HTTPProxy::Kind::Socks4: {
            // Servers of plain SOCKS 4 know addresses only.
            const bool isAddress =
                QHostAddress(targetHost).protocol() == QAbstractSocket::IPv4Protocol;
            return isAddress ? CURLPROXY_SOCKS4 : CURLPROXY_SOCKS4A;
        }
        case HTTPProxy::Kind::Socks5:
            return CURLPROXY_SOCKS5_HOSTNAME;
        case HTTPProxy::Kind::Https:
            return CURLPROXY_HTTPS;
        case HTTPProxy::Kind::Http:
        case HTTPProxy::Kind::None:
            break;
    }
    return CURLPROXY_HTTP;
}

void applyProxy(EasyOptions& options, const TransferSetup& setup) {
    const HTTPProxy& proxy = setup.proxy;
    // An empty text keeps libcurl from asking the environment.
    options.set(CURLOPT_NOPROXY, "");
    if (proxy.kind == HTTPProxy::Kind::None) {
        options.set(CURLOPT_PROXY, "");
        return;
    }
    options.set(CURLOPT_PROXY, isIPv6Address(proxy.host) ? u'[' + proxy.host + u']' : proxy.host);
    options.set(CURLOPT_PROXYPORT, long{proxy.port});
    options.set(CURLOPT_PROXYTYPE, proxyType(proxy, setup.message.url.host()));
    options.set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 0L);
    options.setPath(CURLOPT_PROXY_CAINFO, authoritiesPath(setup.tls));
    if (!proxy.speaksHTTP() && !proxy.user.isEmpty()) {
        options.set(CURLOPT_SOCKS5_AUTH, static_cast<long>(CURLAUTH_BASIC));
        options.set(CURLOPT_PROXYUSERNAME, proxy.user);
        options.set(CURLOPT_PROXYPASSWORD, proxy.password);
    }
}

/// The proof of knowing the password is made of the name in upper case.
QString withUpperCaseBeyondAscii(QString text) {
    for (QChar& c : text) {
        if (c.unicode() >= 0x80 && c.toUpper().unicode() < 0x100)
            c = c.toUpper();
    }
    return text;
}

struct CredentialOptions {
    CURLoption scheme, user, password;
};

void applyCredentials(EasyOptions& options, const ConnectionCredentials& credentials,
                      const CredentialOptions& names) {
    if (credentials.scheme == ConnectionAuthentication::None)
        return;
    const bool isNtlm = credentials.scheme == ConnectionAuthentication::Ntlm;
    options.set(names.scheme, static_cast<long>(isNtlm ? CURLAUTH_NTLM : CURLAUTH_NEGOTIATE));
    // libcurl makes UTF-16 of NTLM's texts by widening their bytes, and upper case of ASCII alone.
    const QString user = isNtlm ? withUpperCaseBeyondAscii(credentials.user) : credentials.user;
    const QString name = credentials.domain.isEmpty() ? user : credentials.domain + u'\\' + user;
    const auto encoded = [isNtlm](const QString& text) {
        return isNtlm ? text.toLatin1() : text.toUtf8();
    };
    options.set(names.user, encoded(name).constData());
    options.set(names.password, encoded(credentials.password).constData());
}

bool isUsable(const HTTPProxy& proxy) {
    return proxy.kind == HTTPProxy::Kind::None ||
           (isPlainHost(proxy.host) && proxy.port > 0 && proxy.port < 65536);
}

}  // namespace

long receiveBufferSize(const TransferSetup& setup) {
    // A TLS record holds no more than 16 KiB, and one is received at a time.
    return setup.message.url.hasScheme("https") ? 32 * 1024 : 512 * 1024;
}

bool applySetup(CURL* easy, const TransferSetup& setup, const RequestLines& lines) {
    if (!isSendable(setup.message) || !isUsable(setup.proxy))
        return false;
    EasyOptions options(easy);
    applyMessage(options, setup, lines);
    applyConnection(options, setup);
    applyTLS(options, setup.tls);
    applyProxy(options, setup);
    applyCredentials(options, setup.serverCredentials,
                     {CURLOPT_HTTPAUTH, CURLOPT_USERNAME, CURLOPT_PASSWORD});
    if (setup.proxy.speaksHTTP())
        applyCredentials(options, setup.proxyCredentials,
                         {CURLOPT_PROXYAUTH, CURLOPT_PROXYUSERNAME, CURLOPT_PROXYPASSWORD});
    return options.succeeded();
}

}  // namespace platform
