#include "http/http_request.h"
#include "http/request/request_state.h"

namespace http {

using namespace Qt::Literals::StringLiterals;

namespace {

/// What the probe of a request has in common with it.
RequestOptions probeOptions(const RequestOptions& main) {
    RequestOptions probe;
    probe.requestHeaders = main.requestHeaders;
    probe.requestCookies = main.requestCookies;
    probe.useCookiePersistence = main.useCookiePersistence;
    probe.useKeychainPersistence = main.useKeychainPersistence;
    probe.useSessionPersistence = main.useSessionPersistence;
    probe.allowCompressedResponse = main.allowCompressedResponse;
    probe.username = main.username;
    probe.password = main.password;
    probe.domain = main.domain;
    probe.proxyUsername = main.proxyUsername;
    probe.proxyPassword = main.proxyPassword;
    probe.proxyDomain = main.proxyDomain;
    probe.proxyHost = main.proxyHost;
    probe.proxyPort = main.proxyPort;
    probe.proxyType = main.proxyType;
    probe.shouldPresentAuthenticationDialog = main.shouldPresentAuthenticationDialog;
    probe.shouldPresentProxyAuthenticationDialog = main.shouldPresentProxyAuthenticationDialog;
    probe.timeOutSeconds = main.timeOutSeconds;
    probe.useHTTPVersionOne = main.useHTTPVersionOne;
    probe.validatesSecureCertificate = main.validatesSecureCertificate;
    probe.clientCertificateIdentity = main.clientCertificateIdentity;
    probe.authoritiesPath = main.authoritiesPath;
    probe.PACurl = main.PACurl;
    probe.shouldPresentCredentialsBeforeChallenge = main.shouldPresentCredentialsBeforeChallenge;
    probe.numberOfTimesToRetryOnTimeout = main.numberOfTimesToRetryOnTimeout;
    probe.shouldUseRFC2616RedirectBehaviour = main.shouldUseRFC2616RedirectBehaviour;
    probe.followsPermanentRedirect = main.followsPermanentRedirect;
    probe.shouldAttemptPersistentConnection = main.shouldAttemptPersistentConnection;
    probe.persistentConnectionTimeoutSeconds = main.persistentConnectionTimeoutSeconds;
    return probe;
}

}  // namespace

std::shared_ptr<HTTPRequest> HTTPRequest::HEADRequest() {
    auto probe = requestWithURL(url());
    {
        const std::scoped_lock guard(cancelledLock_);
        probe->options_ = probeOptions(options_);
    }
    probe->state_->mainRequest = std::static_pointer_cast<HTTPRequest>(shared_from_this());
    probe->setRequestMethod(u"HEAD"_s);
    return probe;
}

}  // namespace http
