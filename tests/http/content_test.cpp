#include "http/content/content_type.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "http/content/http_date.h"
#include "http/content/user_agent.h"
#include "http/http_request.h"

namespace http_test {
namespace {

using namespace Qt::Literals::StringLiterals;

TEST(ContentType, GivesTypeAndEncoding) {
    struct Case {
        QString header, type;
        std::optional<http::StringEncoding> encoding;
    };
    const std::vector<Case> cases{
        {u""_s, u""_s, {}},
        {u" text/html "_s, u"text/html"_s, {}},
        {u"text/html;"_s, u"text/html"_s, {}},
        {u"text/html ; charset=UTF-8"_s, u"text/html"_s, http::utf8StringEncoding},
        {u"text/html;CHARSET=us-ascii; x=y"_s, u"text/html"_s, http::asciiStringEncoding},
        {u"text/html; x=y; charset= latin1"_s, u"text/html"_s, http::latin1StringEncoding},
        {u"text/html; charset=\"utf-8\""_s, u"text/html"_s, {}},
        {u"text/html; charset=utf-8 "_s, u"text/html"_s, {}},
        {u"text/html; charset=klingon"_s, u"text/html"_s, {}},
        {u"text/html; charset="_s, u"text/html"_s, {}},
        {u";charset=utf-8"_s, u";charset=utf-8"_s, {}},
    };
    for (const auto& [header, type, encoding] : cases) {
        const auto parsed = http::parseContentType(header);
        EXPECT_EQ(parsed.mimeType, type) << header.toStdString();
        EXPECT_EQ(parsed.encoding, encoding) << header.toStdString();
    }
}

TEST(StringEncoding, DecodesEveryCharsetThatIcuKnows) {
    const auto decoded = [](const QByteArray& data, const QString& name) {
        const auto encoding = http::stringEncodingFromIANAName(name);
        return encoding ? http::decodedString(data, *encoding) : std::nullopt;
    };
    EXPECT_EQ(decoded("\x93\xfa\x96\x7b", u"shift_jis"_s), u"日本"_s);
    EXPECT_EQ(decoded("\xcd\xee\xf0", u"windows-1251"_s), u"Нор"_s);
    EXPECT_EQ(decoded("\xee\xcf\xd2", u"koi8-r"_s), u"Нор"_s);
    EXPECT_EQ(decoded("\xc4\xe3", u"GBK"_s), u"你"_s);
    EXPECT_EQ(decoded("\xff", u"utf-8"_s), std::nullopt);
    EXPECT_EQ(decoded("", u"utf-8"_s), QString());
    EXPECT_EQ(http::decodedString("x", 0), std::nullopt);
    EXPECT_EQ(http::decodedString("x", 0x8fffffff), std::nullopt);
}

TEST(HTTPDate, ReadsWhatServersWrite) {
    const auto read = [](const QString& text) {
        const auto date = http::HTTPRequest::dateFromRFC1123String(text);
        return date ? date->toString(Qt::ISODate) : u"none"_s;
    };
    EXPECT_EQ(read(u"Sun, 06 Nov 1994 08:49:37 GMT"_s), u"1994-11-06T08:49:37Z"_s);
    EXPECT_EQ(read(u"06 Nov 1994 08:49:37 GMT"_s), u"1994-11-06T08:49:37Z"_s);
    EXPECT_EQ(read(u"Sun, 06 Nov 1994 08:49 GMT"_s), u"1994-11-06T08:49:00Z"_s);
    EXPECT_EQ(read(u" 6 nov 1994 08:49 EST "_s), u"1994-11-06T13:49:00Z"_s);
    EXPECT_EQ(read(u"06 Nov 1994 08:49:37 +0200"_s), u"1994-11-06T06:49:37Z"_s);
    for (const auto& text : {u""_s, u"0"_s, u"-1"_s, u"yesterday"_s, u"1994-11-06T08:49:37Z"_s,
                             u"Sun, 06 Nov 1994"_s, u"Sun, 06 Nov 1994 08:49:37 GMT x"_s})
        EXPECT_EQ(read(text), u"none"_s) << text.toStdString();
}

TEST(UserAgent, NamesTheProgram) {
    using http::userAgentForProgram;
    const QString tail = u"(Macintosh; Mac OS X 10.8.0; de_DE)"_s;
    EXPECT_EQ(userAgentForProgram({u"Shown"_s, u"name"_s, u"1.2"_s, u"77"_s}, u"de_DE"_s),
              u"Shown 1.2 rv:77 "_s + tail);
    EXPECT_EQ(userAgentForProgram({{}, u"name"_s, u"1.2"_s, u"1.2"_s}, u"de_DE"_s),
              u"name 1.2 "_s + tail);
    EXPECT_EQ(userAgentForProgram({{}, u"name"_s, {}, u"77"_s}, u"de_DE"_s), u"name 77 "_s + tail);
    EXPECT_EQ(userAgentForProgram({u"Ü"_s, {}, u"1"_s, {}}, u"de_DE"_s), u"Ã\u009c 1 "_s + tail);
    EXPECT_EQ(userAgentForProgram({{}, {}, u"1"_s, {}}, u"de_DE"_s), QString());
}

TEST(Helpers, ReadFilesAndBytes) {
    using http::HTTPRequest;
    const QTemporaryDir folder;
    const auto file = [&](const QString& name) {
        QFile made(folder.filePath(name));
        EXPECT_TRUE(made.open(QIODevice::WriteOnly));
        return made.fileName();
    };
    EXPECT_EQ(HTTPRequest::mimeTypeForFileAtPath(file(u"a.png"_s)), u"image/png"_s);
    EXPECT_EQ(HTTPRequest::mimeTypeForFileAtPath(file(u"a.unheardof"_s)),
              u"application/octet-stream"_s);
    EXPECT_EQ(HTTPRequest::mimeTypeForFileAtPath(folder.filePath(u"none"_s)), std::nullopt);
    EXPECT_EQ(HTTPRequest::base64forData("\xff\xfe\xfd?"), u"//79Pw=="_s);
    EXPECT_EQ(HTTPRequest::base64forData({}), QString());
    EXPECT_FALSE(HTTPRequest::removeFileAtPath(file(u"gone"_s)));
    EXPECT_FALSE(HTTPRequest::removeFileAtPath(folder.filePath(u"gone"_s)));
    EXPECT_EQ(HTTPRequest::removeFileAtPath(folder.path())->code, 8);
}

}  // namespace
}  // namespace http_test
