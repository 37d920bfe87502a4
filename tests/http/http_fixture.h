#pragma once

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <algorithm>
#include <memory>
#include <vector>

#include "http/http_request.h"
#include "http/http_session.h"
#include "support/http_server.h"
#include "support/main_loop.h"

namespace http_test {

/// Writes down what it hears, and answers as told.
class RecordingDelegate : public http::HTTPRequestDelegate {
public:
    Capabilities does;
    std::vector<std::string> events;
    std::vector<http::HTTPResponse> responses;
    QByteArray data;
    std::vector<platform::Url> redirects;
    int blocks = 0;
    std::int64_t stored = 0;
    std::function<void(int number)> onBlock;
    bool followsRedirects = true;
    /// Called after each event is written down.
    std::function<void(const std::string& event, http::HTTPRequest& request)> onEvent;

    [[nodiscard]] Capabilities capabilities() const override { return does; }
    [[nodiscard]] bool hasEnded() const { return count("finished") + count("failed") > 0; }
    [[nodiscard]] int count(const std::string& event) const {
        return static_cast<int>(std::count(events.begin(), events.end(), event));
    }

    using Request = http::HTTPRequest;
    void requestStarted(Request& request) override { note("started", request); }
    void requestDidReceiveResponseHeaders(Request& request,
                                          const http::HTTPResponse& response) override {
        responses.push_back(response);
        note("headers", request);
    }
    void requestRedirected(Request& request) override { note("redirected", request); }
    void requestWillRedirectToURL(Request& request, const platform::Url& url) override;
    void requestDidReceiveData(Request& request, const QByteArray& block) override;
    void requestDidStoreData(Request&, std::int64_t count) override { stored += count; }
    void requestFinished(Request& request) override { note("finished", request); }
    void requestFailed(Request& request) override { note("failed", request); }
    void authenticationNeededForRequest(Request& request) override {
        note("authenticationNeeded", request);
    }
    void proxyAuthenticationNeededForRequest(Request& request) override {
        note("proxyAuthenticationNeeded", request);
    }

private:
    void note(const std::string& event, http::HTTPRequest& request);
};

/// A server, a main loop on a manual clock, and a session between them.
class HTTPTest : public ::testing::Test {
protected:
    HTTPTest();
    ~HTTPTest() override;

    [[nodiscard]] std::shared_ptr<http::HTTPRequest> request(const QString& path = QString());
    /// With the delegate of this test.
    [[nodiscard]] std::shared_ptr<http::HTTPRequest> observedRequest(
        const QString& path = QString());
    /// Starts it and waits for its end.
    void run(const std::shared_ptr<http::HTTPRequest>& request);
    [[nodiscard]] bool waitForEnd();
    [[nodiscard]] bool waitForRequests(std::size_t count);
    /// Until the request thread has done all that was due when this was called.
    void settleThread();
    /// Lets the request thread work, and not the main loop, until `done`. False: real time ran out.
    [[nodiscard]] bool waitForThread(const std::function<bool()>& done);
    /// Until every stream that has been started rests or has ended.
    [[nodiscard]] bool waitForRest();
    /// Moves the clock in steps of the status timer; the request thread keeps up.
    void advance(platform::Seconds seconds);

    [[nodiscard]] QString temporaryFile(const QString& name) const;
    [[nodiscard]] static QByteArray contents(const QString& path);
    static void write(const QString& path, const QByteArray& data);
    static int errorCode(const http::HTTPRequest& request);
    /// Of value "1", for all of `domain`.
    [[nodiscard]] static platform::Cookie cookie(const QString& name, const QString& domain);

    support::MainLoop main;
    std::unique_ptr<platform::CookieStorage> cookies;
    std::unique_ptr<platform::CredentialStorage> secrets;
    support::HTTPServer server;
    QTemporaryDir folder;
    RecordingDelegate delegate;
    std::unique_ptr<http::HTTPSession> session;
};

}  // namespace http_test
