#include "app/authentication/http_authentication_manager.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "app/settings.h"
#include "http/http_request.h"
#include "http/http_session.h"
#include "platform/base/user_defaults.h"
#include "support/http_server.h"
#include "support/main_loop.h"

namespace {

using namespace Qt::Literals::StringLiterals;
using app::AuthenticationQuestion;
using http::HTTPRequest;

/// Remembers what it was asked; the test answers.
class Prompt final : public app::AuthenticationPrompt {
public:
    [[nodiscard]] bool isVisible() const override { return client != nullptr; }
    [[nodiscard]] bool show(const AuthenticationQuestion& question, Client& asking) override {
        questions.push_back(question);
        client = isSomebodyThere ? &asking : nullptr;
        return isSomebodyThere;
    }
    void close() override { client = nullptr; }

    bool isSomebodyThere = true;
    Client* client = nullptr;
    std::vector<AuthenticationQuestion> questions;
};

class AuthenticationManagerTest : public testing::Test, private http::HTTPRequestDelegate {
protected:
    AuthenticationManagerTest() {
        HTTPRequest::sharedQueue().setMaxConcurrentOperationCount(16);
        challengeWith("Basic realm=\"club\"");
    }
    ~AuthenticationManagerTest() override {
        for (const auto& request : requests)
            request->clearDelegatesAndCancel();
        main.settle();
    }

    void challengeWith(const std::string& offer) {
        server.handleAll([offer](const support::ReceivedRequest& request) {
            support::Reply reply;
            if (!request.header("Authorization")) {
                reply.status = 401;
                reply.headers = {{"WWW-Authenticate", offer}};
            }
            return reply;
        });
    }

    /// Starts as many requests, and waits until all of them wait for an answer.
    void start(const QString& address, std::size_t count) {
        HTTPRequest::clearSession();
        const std::size_t before = asked.size();
        for (std::size_t number = 0; number < count; ++number) {
            requests.push_back(HTTPRequest::requestWithURL(*platform::Url::parse(address)));
            requests.back()->setProxyHost(u"127.0.0.1"_s);
            requests.back()->setProxyPort(server.port());
            requests.back()->setUseSessionPersistence(false);
            requests.back()->setUseKeychainPersistence(true);
            requests.back()->setDelegate(this);
            requests.back()->startAsynchronous();
        }
        ASSERT_TRUE(main.waitUntil([&] { return asked.size() == before + count; }));
    }

    void waitForEnds(int count) {
        ASSERT_TRUE(main.waitUntil([&] { return ended >= count; }));
        EXPECT_EQ(ended, count);
    }

    support::MainLoop main;
    support::HTTPServer server;
    QTemporaryDir folder;
    platform::UserDefaults defaults{folder.path(), u"test"_s, &main.loop};
    http::HTTPSession session{main.clock};
    Prompt prompt;
    app::DQHTTPAuthenticationManager manager{&prompt, defaults};
    std::vector<std::shared_ptr<HTTPRequest>> requests;
    /// Who asked, in turn, which is not the turn in which they began.
    std::vector<HTTPRequest*> asked;
    int ended = 0;

private:
    [[nodiscard]] Capabilities capabilities() const override { return {false, false, true, true}; }
    void authenticationNeededForRequest(HTTPRequest& request) override {
        asked.push_back(&request);
        manager.acquireAuthenticationForRequest(request);
    }
    void requestFinished(HTTPRequest&) override { ++ended; }
    void requestFailed(HTTPRequest&) override { ++ended; }
};

TEST_F(AuthenticationManagerTest, OneAnswerLetsInAllOfOneServer) {
    start(u"http://one.invalid:81/a.iso"_s, 4);
    start(u"http://two.invalid/b.iso"_s, 2);
    ASSERT_EQ(prompt.questions.size(), 1U);
    EXPECT_EQ(prompt.questions[0].explanation,
              u"You need to log in before downloading \"a.iso\" from \"club\"."_s);
    EXPECT_EQ(prompt.questions[0].securityInfo,
              u"Your password will be submitted as plain text."_s);
    EXPECT_EQ(prompt.questions[0].host, u"one.invalid:81"_s);
    EXPECT_TRUE(prompt.questions[0].storesPassword);
    prompt.client->applyCredentialsFromDialog({{}, u"me"_s, u"pw"_s, false});
    waitForEnds(4);
    EXPECT_FALSE(requests[3]->useKeychainPersistence());
    EXPECT_TRUE(requests[4]->useKeychainPersistence());

    // Without a port in the address each is asked about.
    for (const int ends : {5, 6}) {
        ASSERT_TRUE(prompt.isVisible());
        EXPECT_FALSE(prompt.questions.back().storesPassword);
        prompt.client->applyCredentialsFromDialog({{}, u"me"_s, u"pw"_s, false});
        waitForEnds(ends);
    }
    EXPECT_EQ(prompt.questions.size(), 3U);
    EXPECT_FALSE(prompt.isVisible());
}

TEST_F(AuthenticationManagerTest, ANoIsForOneRequest) {
    start(u"http://one.invalid:81/a.iso"_s, 3);
    prompt.client->cancelDialog();
    waitForEnds(1);
    EXPECT_TRUE(http::hasRequestErrorCode(asked[0]->error().value(),
                                          http::HTTPRequestErrorCode::Authentication));
    EXPECT_EQ(prompt.questions.size(), 2U);
    manager.cancelAuthenticationForRequest(*asked[2]);
    EXPECT_EQ(prompt.questions.size(), 2U);
    manager.cancelAuthenticationForRequest(*asked[1]);
    EXPECT_FALSE(prompt.isVisible());

    prompt.isSomebodyThere = false;
    start(u"http://one.invalid:81/a.iso"_s, 1);
    waitForEnds(2);
}

TEST_F(AuthenticationManagerTest, ServersDoNotPutWordsIntoOurMouth) {
    const std::string realm = "a\u202eb" + std::string(400, 'x');
    for (const auto& [offer, how] :
         {std::pair("Basic realm=\"\x1b[2J" + realm + "\"", u"plain text"_s),
          std::pair("Digest nonce=n, realm=\"" + realm + "\"", u"securely"_s)}) {
        challengeWith(offer);
        start(u"http://one.invalid:81/a.iso"_s, 1);
        const AuthenticationQuestion& question = prompt.questions.back();
        EXPECT_TRUE(question.securityInfo.contains(how));
        EXPECT_FALSE(question.explanation.contains(QChar(0x202e)));
        EXPECT_FALSE(question.explanation.contains(QChar(0x1b)));
        EXPECT_LT(question.explanation.size(), 200);
        manager.cancelAuthenticationForRequest(*requests.back());
    }
    challengeWith("NTLM");
    start(u"http://one.invalid:81/a.iso"_s, 1);
    EXPECT_TRUE(prompt.questions.back().needsDomain);
    EXPECT_EQ(prompt.questions.back().explanation,
              u"You need to log in before downloading \"a.iso\"."_s);
}

}  // namespace
