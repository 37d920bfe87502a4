#pragma once

#include <QByteArray>
#include <cstdint>
#include <functional>

#include "http/http_response.h"

namespace http {

class HTTPRequest;
class HTTPRequestDelegate;

/// Closures that a request calls on the main thread, beside its delegate. All optional.
struct RequestBlocks {
    using Block = std::function<void()>;
    using SizeBlock = std::function<void(std::int64_t size)>;
    using ProgressBlock = std::function<void(std::int64_t amount, std::uint64_t total)>;

    Block startedBlock;
    std::function<void(const HTTPResponse& response)> headersReceivedBlock;
    Block completionBlock;
    Block failureBlock;
    ProgressBlock bytesReceivedBlock;
    ProgressBlock bytesSentBlock;
    SizeBlock downloadSizeIncrementedBlock;
    SizeBlock uploadSizeIncrementedBlock;
    /// Takes the body as a delegate with `receivesData` does.
    std::function<void(const QByteArray& data)> dataReceivedBlock;
    /// Take the question as a delegate with `suppliesCredentials` does.
    Block authenticationNeededBlock;
    Block proxyAuthenticationNeededBlock;
    Block requestRedirectedBlock;
};

/// Replacements for the operations that a request calls on its delegate, for this request only.
/// Those not set leave the delegate's own. None is called once the delegate is gone.
struct DelegateSelectors {
    std::function<void(HTTPRequest&)> didStartSelector;
    std::function<void(HTTPRequest&, const HTTPResponse&)> didReceiveResponseHeadersSelector;
    std::function<void(HTTPRequest&, const platform::Url&)> willRedirectSelector;
    std::function<void(HTTPRequest&)> didFinishSelector;
    std::function<void(HTTPRequest&)> didFailSelector;
    std::function<void(HTTPRequest&, const QByteArray&)> didReceiveDataSelector;
};

}  // namespace http
