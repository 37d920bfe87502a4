#include "platform/net/transfer_error.h"

#include <openssl/x509_vfy.h>

#include <cerrno>

#include "platform/net/http_read_stream.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

struct Meaning {
    const QString& domain;
    int code;
    QString text;
};

Meaning connectionLost() {
    return {networkErrorDomain, networkErrorConnectionLost, u"The connection was lost"_s};
}

Meaning badResponse() {
    return {networkErrorDomain, networkErrorBadServerResponse,
            u"The server's response cannot be used"_s};
}

Meaning clientCertificate() {
    return {securityErrorDomain, securityErrorClientCertificate,
            u"The server refused the client certificate, or asks for one"_s};
}

/// libcurl reports these as a failed receive; only its words tell them from a lost connection.
Meaning meaningOfReceiveError(const QString& reason) {
    if (reason.contains("chunk"_L1, Qt::CaseInsensitive))
        return badResponse();
    // With TLS 1.3 the server's refusal comes after the handshake.
    if (reason.contains("alert certificate required"_L1) ||
        reason.contains("alert bad certificate"_L1) || reason.contains("alert unknown ca"_L1))
        return clientCertificate();
    return connectionLost();
}

/// Without a fault of the certificate itself it is another host's, which libcurl finds out before
/// it notes a reason.
Meaning meaningOfVerification(long verification) {
    const QString text = u"The server's certificate cannot be trusted"_s;
    switch (verification) {
        case X509_V_OK:
        case X509_V_ERR_UNSPECIFIED:
            return {securityErrorDomain, securityErrorCertificateOfOtherHost, text};
        case X509_V_ERR_CERT_HAS_EXPIRED:
            return {securityErrorDomain, securityErrorCertificateExpired, text};
        case X509_V_ERR_CERT_NOT_YET_VALID:
            return {securityErrorDomain, securityErrorCertificateNotYetValid, text};
        default:
            return {securityErrorDomain, securityErrorCertificate, text};
    }
}

Meaning cutShort() {
    return {networkErrorDomain, networkErrorCutShort, u"The server's response is cut short"_s};
}

Meaning meaningOf(const TransferResult& result) {
    const QString& reason = result.reason;
    switch (result.code) {
        case CURLE_URL_MALFORMAT:  // A host name that no server can have, such as "a..b".
        case CURLE_COULDNT_RESOLVE_HOST:
            return {networkErrorDomain, networkErrorHostNotFound, u"The server was not found"_s};
        case CURLE_COULDNT_RESOLVE_PROXY:
            return {networkErrorDomain, networkErrorProxyNotFound, u"The proxy was not found"_s};
        case CURLE_COULDNT_CONNECT:
            if (result.systemError == ECONNREFUSED)
                return {networkErrorDomain, networkErrorRefused,
                        u"The server refused the connection"_s};
            [[fallthrough]];
        case CURLE_PROXY:
        case CURLE_INTERFACE_FAILED:
            return {networkErrorDomain, networkErrorCannotConnect,
                    u"No connection to the server could be made"_s};
        case CURLE_OPERATION_TIMEDOUT:
            return {networkErrorDomain, networkErrorTimedOut, u"No connection was made in time"_s};
        case CURLE_SEND_ERROR:
        case CURLE_RECV_ERROR:
            return meaningOfReceiveError(reason);
        case CURLE_GOT_NOTHING:
            return connectionLost();
        case CURLE_PARTIAL_FILE:
            return cutShort();
        case CURLE_SSL_CERTPROBLEM:
        case CURLE_SSL_CLIENTCERT:
            return clientCertificate();
        case CURLE_PEER_FAILED_VERIFICATION:
            return meaningOfVerification(result.verification);
        case CURLE_SSL_CACERT_BADFILE:
        case CURLE_SSL_ISSUER_ERROR:
        case CURLE_SSL_CRL_BADFILE:
        case CURLE_SSL_INVALIDCERTSTATUS:
        case CURLE_SSL_PINNEDPUBKEYNOTMATCH:
            return {securityErrorDomain, securityErrorCertificate,
                    u"The server's certificate cannot be trusted"_s};
        case CURLE_SSL_CONNECT_ERROR:
        case CURLE_SSL_CIPHER:
        case CURLE_SSL_ENGINE_NOTFOUND:
        case CURLE_SSL_ENGINE_SETFAILED:
        case CURLE_SSL_ENGINE_INITFAILED:
        case CURLE_SSL_SHUTDOWN_FAILED:
        case CURLE_USE_SSL_FAILED:
            return {securityErrorDomain, securityErrorHandshake,
                    u"No secure connection could be agreed upon"_s};
        case CURLE_SEND_FAIL_REWIND:
            return {posixErrorDomain, ESPIPE,
                    u"The body of the request cannot be sent a second time"_s};
        case CURLE_OUT_OF_MEMORY:
            // Also what libcurl says of a line of the head that is longer than its buffer for one.
            return {networkErrorDomain, networkErrorBadServerResponse,
                    u"The server's response has a line that is too long"_s};
        default:
            return badResponse();
    }
}

}  // namespace

Error badResponseError(const QString& why) {
    const Meaning meaning = badResponse();
    return {meaning.domain, meaning.code, u"%1: %2"_s.arg(meaning.text, why), nullptr};
}

Error wrongPartError(const QString& why) {
    Error error = badResponseError(why);
    error.code = networkErrorWrongPart;
    return error;
}

Error brokenReusedConnectionError() {
    return {posixErrorDomain, EPIPE, u"The connection was lost: the server had closed it"_s,
            nullptr};
}

Error unannouncedEndError() {
    const Meaning meaning = connectionLost();
    return {meaning.domain, meaning.code,
            u"%1: it ended without a notice, before the body had to be over"_s.arg(meaning.text),
            nullptr};
}

Error proxyRefusalError(const HTTPProxy& proxy, const HTTPResponseHead& answer) {
    constexpr qsizetype longestReason = 80;
    QString said = answer.statusLine.section(u' ', 1).left(longestReason).trimmed();
    said.removeIf([](QChar c) { return !c.isPrint(); });
    const QString host = proxy.host.contains(u':') ? u'[' + proxy.host + u']' : proxy.host;
    return {networkErrorDomain, networkErrorProxyRefused,
            u"The proxy %1:%2 answered %3"_s.arg(host, QString::number(proxy.port), said), nullptr};
}

Error cutShortError() {
    const Meaning meaning = cutShort();
    return {meaning.domain, meaning.code,
            u"%1: its body is not as long as it says"_s.arg(meaning.text), nullptr};
}

Error errorForResult(const TransferResult& result) {
    const Meaning meaning = meaningOf(result);
    const QString why = result.reason.isEmpty() ? QString::fromUtf8(curl_easy_strerror(result.code))
                                                : result.reason;
    return {meaning.domain, meaning.code, u"%1: %2"_s.arg(meaning.text, why), nullptr};
}

}  // namespace platform
