#include <gtest/gtest.h>

#include "platform/net/headers_for_log.h"
#include "platform/net/http_authentication.h"
#include "support/printers.h"

namespace {

using namespace Qt::Literals::StringLiterals;
using platform::HTTPAuthentication;

/// Challenges in a short form: "Scheme", "Scheme token68" or "Scheme{name=value;...}".
QStringList readBack(const QStringList& fields) {
    QStringList texts;
    for (const auto& challenge : platform::challengesFromFields(fields)) {
        QStringList parameters;
        for (const auto& [name, value] : challenge.parameters.asKeyValueRange())
            parameters += name + u'=' + value;
        QString text = challenge.scheme;
        if (!challenge.token68.isEmpty())
            text += u' ' + challenge.token68;
        if (!parameters.isEmpty())
            text += u'{' + parameters.join(u';') + u'}';
        texts += text;
    }
    return texts;
}

TEST(HTTPChallenge, IsReadAsServersWriteIt) {
    struct Case {
        QStringList fields, challenges;
    };
    for (const auto& [fields, challenges] : {
             Case{{u"Basic realm=\"a, b\""_s}, {u"Basic{realm=a, b}"_s}},
             Case{{u"Negotiate, NTLM, Basic Realm=x"_s},
                  {u"Negotiate"_s, u"NTLM"_s, u"Basic{realm=x}"_s}},
             Case{{u"NTLM TlRMTVNTUAACAAAA=="_s}, {u"NTLM TlRMTVNTUAACAAAA=="_s}},
             Case{
                 {u"Digest nonce = \"n\\\"q\" ,qop=\"auth,auth-int\" , , stale=TRUE"_s, u"basic"_s},
                 {u"Digest{nonce=n\"q;qop=auth,auth-int;stale=TRUE}"_s, u"basic"_s}},
             Case{{u"Basic realm=one, realm=two"_s}, {u"Basic{realm=one}"_s}},
             Case{{u"realm=\"nobody's\", ;;;, Basic realm=\"open"_s}, {u"Basic"_s}},
             Case{{u""_s, u",,, ,"_s, u"\x01\x02 \"Basic\""_s}, {}},
         })
        EXPECT_EQ(readBack(fields), challenges) << qPrintable(fields.join(u'|'));
    EXPECT_EQ(readBack({u"A,"_s.repeated(100'000)}).size(), 32);
}

// The examples of RFC 7616, 3.9.1.
TEST(DigestAuthentication, AnswersAsTheStandardSays) {
    const QString common =
        u"Digest realm=\"http-auth@example.org\", qop=\"auth, auth-int\", "
        "nonce=\"7ypf/xlj9XXwfDPEoM4URrv/xwf94BcCAzFZH4GiTo0v\", "
        "opaque=\"FQhe/qaU925kfnzjCev0ciny7QMkPqMAFRtzCUYo5tdS\", algorithm="_s;
    const platform::DigestAnswerParts parts{"Mufasa",
                                            "Circle of Life",
                                            "GET",
                                            "/dir/index.html",
                                            "f2/wE4q74E6zIJEtWaHKaf5wv/H5QzzpXusqGemxURZJ",
                                            1};
    for (const auto& [algorithm, response] :
         {std::pair{u"MD5"_s, "response=\"8ca523f5e9506fed4657c9700eebdbec\""},
          std::pair{
              u"SHA-256"_s,
              "response=\"753927fa0e85d155564e2e272a28d1802ca10daf4496794697cf8db5856cb6c1\""}}) {
        const auto challenge =
            platform::digestChallenge(platform::challengesFromFields({common + algorithm}).at(0));
        ASSERT_TRUE(challenge);
        const auto answer = platform::digestAnswer(*challenge, parts);
        ASSERT_TRUE(answer);
        EXPECT_TRUE(answer->contains(response)) << answer->constData();
        EXPECT_TRUE(answer->contains("qop=auth, nc=00000001")) << answer->constData();
    }
    for (const auto* refused : {"SHA-512", "md5, qop=auth-int", "md5, nonce=x, opaque=\"\x01\""})
        EXPECT_FALSE(platform::digestChallenge(
            platform::challengesFromFields({u"Digest algorithm="_s + QLatin1String(refused)})
                .at(0)))
            << refused;
}

// After the example of RFC 7616, 3.9.2, with the name as erratum 4897 puts it right.
TEST(DigestAuthentication, HidesTheNameWhereItIsAskedTo) {
    const auto challenge = platform::digestChallenge(
        platform::challengesFromFields(
            {u"Digest realm=\"api@example.org\", qop=\"auth\", algorithm=SHA-512-256, "
             "nonce=\"5TsQWLVdgBdmrQ0XsxbDODV+57QdFR34I9HAbC/RVvkK\", "
             "opaque=\"HRPCssKJSGjCrkzDg8OhwpzCiGChXYjwrI2QmXDnsOS\", charset=UTF-8, "
             "userhash=true"_s})
            .at(0));
    ASSERT_TRUE(challenge);
    const auto answer =
        platform::digestAnswer(*challenge, {"J\xc3\xa4s\xc3\xb8n Doe", "Secret, or not?", "GET",
                                            "/doe.json", "NTg6RKcb9boFIAS3KrFK9BGeh+niz/sm", 1});
    ASSERT_TRUE(answer);
    for (const char* part :
         {"username=\"793263caabb707a56211940d90411ea4a575adeccb7e360aeb624ed06ece9b0b\"",
          "response=\"7a4e1192babbba02e91182d2895bfdbf7adafc6e48d4e517ca301974843d840c\"",
          "algorithm=SHA-512-256", "userhash=true"})
        EXPECT_TRUE(answer->contains(part)) << part << " in " << answer->constData();
}

/// The transport widens the bytes of a name to 16 bits each, which is right for ISO Latin 1 alone.
TEST(HTTPAuthentication, SendsByNTLMWhatNTLMCanSend) {
    platform::HTTPResponseHead head;
    head.statusCode = 401;
    head.headers.add(u"WWW-Authenticate"_s, u"NTLM"_s);
    const auto made = HTTPAuthentication::createFromResponse(head);
    const platform::HTTPRequestMessage message{
        u"GET"_s, *platform::Url::parse(u"http://h/"_s), {}, {}};
    const auto isSent = [&](const QString& user, const QString& password, const QString& domain) {
        return made->answer({user, password, domain}, message, false).has_value();
    };
    EXPECT_TRUE(isSent(u"j\u00f6rg"_s, u"gr\u00fcn"_s, u"B\u00dcRO"_s));
    EXPECT_FALSE(isSent(u"\u0142ukasz"_s, u"pw"_s, {}));
    EXPECT_FALSE(isSent(u"me"_s, u"\u20ac"_s, {}));
    EXPECT_FALSE(isSent(u"me"_s, u"pw"_s, u"\u041c"_s));
}

TEST(HTTPAuthentication, ChoosesTheStrongestThatItKnows) {
    for (const auto& [offered, method] :
         {std::pair{u"Basic realm=b, Digest realm=d, nonce=n, NTLM, Negotiate"_s, u"Negotiate"_s},
          std::pair{u"NTLM, Basic realm=b, Digest realm=d, nonce=n"_s, u"Digest"_s},
          std::pair{u"Digest nonce=n, algorithm=SHA-512, Basic realm=\"b\x07\""_s, u"Basic"_s},
          std::pair{u"Bearer realm=b, NTLM"_s, u"NTLM"_s}, std::pair{u"Bearer"_s, QString()}}) {
        platform::HTTPResponseHead head;
        head.statusCode = 401;
        head.headers.add(u"WWW-Authenticate"_s, offered);
        const auto made = HTTPAuthentication::createFromResponse(head);
        EXPECT_EQ(made ? made->method() : QString(), method) << qPrintable(offered);
        if (made && method == u"Basic"_s) {
            EXPECT_EQ(made->realm(), u"b"_s);
        }
    }
}

TEST(HeadersForLog, KeepWhatLetsSomebodyInToThemselves) {
    platform::HTTPHeaders headers;
    for (const auto& [name, value] :
         {std::pair{u"Server"_s, u"nginx"_s}, std::pair{u"set-cookie"_s, u"a=canary"_s},
          std::pair{u"WWW-Authenticate"_s, u"Negotiate canary==, Digest nonce=canary"_s},
          std::pair{u"Proxy-Authenticate"_s, u"NTLM canary="_s},
          std::pair{u"Proxy-Authorization"_s, u"Basic canary"_s},
          std::pair{u"Authentication-Info"_s, u"rspauth=canary"_s},
          std::pair{u"X-Auth-Token"_s, u"canary"_s}})
        headers.add(name, value);
    EXPECT_EQ(platform::headersForLog(headers),
              u"Server: nginx; set-cookie: ...; WWW-Authenticate: Negotiate, Digest; "
              "Proxy-Authenticate: NTLM; Proxy-Authorization: ...; Authentication-Info: ...; "
              "X-Auth-Token: ..."_s);
}

}  // namespace
