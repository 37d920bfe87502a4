#include "http_fixture.h"

#include <QFile>
#include <future>

#include "http/shared/shared_state.h"
#include "http/shared/transfer_loop.h"

namespace http_test {

using http::HTTPRequest;

void RecordingDelegate::note(const std::string& event, HTTPRequest& request) {
    events.push_back(event);
    if (onEvent)
        onEvent(event, request);
}

void RecordingDelegate::requestWillRedirectToURL(HTTPRequest& request, const platform::Url& url) {
    redirects.push_back(url);
    note("willRedirect", request);
    if (does.confirmsRedirects && followsRedirects)
        request.redirectToURL(url);
}

void RecordingDelegate::requestDidReceiveData(HTTPRequest& request, const QByteArray& block) {
    // Not shared with the transport, which fills its blocks again.
    data.append(block.constData(), block.size());
    if (++blocks == 1)
        note("data", request);
    if (onBlock)
        onBlock(blocks);
}

HTTPTest::HTTPTest()
    : cookies(platform::makeCookieStorage(QString())),
      secrets(platform::makeMemoryCredentialStorage()),
      session(std::make_unique<http::HTTPSession>(main.clock)) {
    platform::installSharedCookieStorage(cookies.get());
    platform::installSharedCredentialStorage(secrets.get());
}

HTTPTest::~HTTPTest() {
    session.reset();
    main.settle();
    platform::installSharedCookieStorage(nullptr);
    platform::installSharedCredentialStorage(nullptr);
}

std::shared_ptr<HTTPRequest> HTTPTest::request(const QString& path) {
    const QString address = path.contains(QStringLiteral("://")) ? path : server.url(path);
    return HTTPRequest::requestWithURL(*platform::Url::parse(address));
}

std::shared_ptr<HTTPRequest> HTTPTest::observedRequest(const QString& path) {
    auto made = request(path);
    made->setDelegate(&delegate);
    return made;
}

void HTTPTest::run(const std::shared_ptr<HTTPRequest>& request) {
    request->startAsynchronous();
    ASSERT_TRUE(main.waitUntil([&] { return request->isFinished(); }));
    main.settle();
}

bool HTTPTest::waitForEnd() {
    return main.waitUntil([&] { return delegate.hasEnded(); });
}

bool HTTPTest::waitForRequests(std::size_t count) {
    return main.waitUntil([&] { return server.requests().size() >= count; });
}

void HTTPTest::settleThread() {
    const auto loop = http::SharedState::current()->thread.loop();
    // Timers run after posted calls, so the first turn that ends after the clock moved is the
    // second.
    for (int turn = 0; turn < 2; ++turn) {
        std::promise<void> reached;
        loop->post([&] { reached.set_value(); });
        reached.get_future().wait();
    }
}

bool HTTPTest::waitForThread(const std::function<bool()>& done) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!done()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        settleThread();
    }
    return true;
}

bool HTTPTest::waitForRest() {
    settleThread();
    return main.waitUntil([] { return !HTTPRequest::isNetworkInUse(); });
}

void HTTPTest::advance(platform::Seconds seconds) {
    constexpr platform::Seconds step = 0.25;
    for (platform::Seconds moved = 0; moved < seconds; moved += step) {
        main.clock.advance(std::min(step, seconds - moved));
        settleThread();
        main.settle();
    }
}

QString HTTPTest::temporaryFile(const QString& name) const {
    return folder.filePath(name);
}

QByteArray HTTPTest::contents(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

void HTTPTest::write(const QString& path, const QByteArray& data) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    file.write(data);
}

int HTTPTest::errorCode(const HTTPRequest& request) {
    const auto error = request.error();
    return error ? error->code : 0;
}

platform::Cookie HTTPTest::cookie(const QString& name, const QString& domain) {
    platform::Cookie made;
    made.name = name;
    made.value = QStringLiteral("1");
    made.domain = domain;
    made.path = QStringLiteral("/");
    return made;
}

}  // namespace http_test
