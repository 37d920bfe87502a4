#pragma once

namespace http {

class RequestRun;

/// Finds the proxy of one request.
///
/// The system's settings are not asked yet: a request that was given no proxy goes direct.
///
/// The request's loop, under its lock.
class ProxyConfiguration {
public:
    explicit ProxyConfiguration(RequestRun& run) : _run(run) {}

    /// True: the request can be sent now. False: it has failed, or `startRequest` will be called
    /// when a proxy has been found.
    [[nodiscard]] bool configureProxies() { return true; }
    /// Gives up a search under way.
    void cancelLoad() {}

private:
    RequestRun& _run;
};

}  // namespace http
