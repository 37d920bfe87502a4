#include <gtest/gtest.h>

#include <thread>

#include "links/page_rules_support.h"
#include "links/pages/download_page_reader.h"
#include "links/pages/page_text.h"
#include "platform/base/thread_pool.h"
#include "support/main_loop.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

QStringList addressesOf(const ExtractedLinks& found) {
    QStringList addresses;
    for (const platform::Url& url : found.urls)
        addresses.append(url.absoluteString());
    return addresses;
}

const QString start = u"http://h/dir/page.html"_s;

TEST(Extraction, FollowsTheCascade) {
    struct Case {
        const char* name;
        /// The stages of the only rule, as JSON.
        QString cascade;
        bool collects;
        /// The first page, if it can be loaded.
        std::optional<QByteArray> page;
        /// Addresses, parted by blanks.
        QString links;
        /// Others that are there, and what is asked for in turn.
        QMap<QString, QByteArray> pages = {};
        QString fetched = {};
    };
    const QString quoted = uR"j(["'([^']+)'"])j"_s, one = u"http://h/dir/1"_s,
                  two = u"http://h/dir/2"_s;
    const Case cases[] = {
        {"relative", quoted, false, "'files/a.zip' 'b'", u"http://h/dir/files/a.zip"_s},
        {"without a host", quoted, true,
         "'/a.zip' 'mailto:someone' '?q' 'a \xC3\xA4' '//\xC3\xA4/'",
         u"http://h/a.zip mailto:someone http://h/dir/page.html?q http://h/dir/a%20%C3%A4 "
         "http://xn--4ca/"_s},
        {"repaired", quoted, true,
         R"('hxxps://o/a' 'http:\/\/p\/b' 'http://r/?u=http%3A%2F%2Fs%2Fc&amp;d')",
         u"https://o/a http://p/b http://s/c&d"_s},
        {"two pages",
         uR"j(["href=\"([^\"]+)\"","src=(\\S+)"])j"_s,
         false,
         "<a HREF=\"2\">",
         u"http://o/x.zip"_s,
         {{two, "src=http://o/x.zip "}},
         two},
        {"every page of a stage",
         uR"j(["'(\\w)'","=(\\w)"])j"_s,
         true,
         "'1' '2'",
         u"http://h/dir/a http://h/dir/b"_s,
         {{one, "=a"}, {two, "=a =b"}},
         one + u' ' + two},
        {"first alternative that finds", uR"j([["none","'(\\w)'","\\w+"]])j"_s, false, "'a' 'b'",
         u"http://h/dir/a"_s},
        {"all alternatives", uR"j([["'(\\w)'","(b)","c"]])j"_s, true, "'a' 'a' 'http://h:x/' 'b' c",
         u"http://h/dir/a http://h/dir/b http://h/dir/c"_s},
        {"groups are joined", uR"j(["<(a)?(b)(.)(c*)>"])j"_s, false, "<b\nc> <b.>",
         u"http://h/dir/b."_s},
        {"empty yield", uR"j(["x(y)?"])j"_s, false, "x xy", u"http://h/dir/y"_s},
        {"dead end", uR"j(["'(\\w)'","z"])j"_s, false, "'1'", {}, {}, one},
        {"empty stage", uR"j(["'(\\w)'",[]])j"_s, false, "'1'", {}, {{one, "b"}}, one},
        {"unreachable", quoted, false, {}, {}},
        {"no text", quoted, false, "\xFF'a'", {}},
        {"hidden page", uR"j(["atob\\([^)]*\\)","'([^']+)'"])j"_s, true,
         "atob('J2h0dHA6Ly9vL2EuemlwJyAncmVsJw==') atob('J3gn')",
         u"http://o/a.zip http://h/dir/rel"_s},
        {"hidden on the last page", uR"j(["atob\\([^)]*\\)"])j"_s, false,
         "atob('aHR0cDovL2hvc3QvYS56aXA=')", u"aHR0cDovL2hvc3QvYS56aXA="_s},
        {"hidden rubbish", uR"j(["atob\\([^)]*\\)","."])j"_s, false, "atob('%%%%')", {}},
        {"hidden without quotes", uR"j(["atob\\([^)]*\\)"])j"_s, false, "atob(x)",
         u"http://h/dir/atob(x)"_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto rules =
            rulesOf(u"[{\"Source\":\"h/\",\"Query Cascade\":%1,\"Collect All Matches\":%2}]"_s.arg(
                c.cascade, c.collects ? u"true"_s : u"false"_s));
        ASSERT_TRUE(rules);
        const auto pages = std::make_shared<MemoryPages>();
        pages->pages = c.pages;
        if (c.page)
            pages->pages[start] = *c.page;
        const auto found = URLsFromDownloadPageWithTitle({urlOf(start), rules, pages});
        EXPECT_EQ(addressesOf(found).join(u' '), c.links);
        EXPECT_EQ(pages->fetched.join(u' '), (start + u' ' + c.fetched).trimmed());
    }
}

TEST(Extraction, TakesTheTitleOfTheFirstPageThatHasOne) {
    const auto rules = rulesOf(uR"j([{"Source":"h/","Query Cascade":["'(\\w)'","b"]}])j"_s);
    const auto pages = std::make_shared<MemoryPages>();
    pages->pages[start] = "<TITLE> \n </TITLE>'a'";
    pages->pages[u"http://h/dir/a"_s] = "<title>\n A &amp; B &lt;</title>b<title>C</title>";
    const auto found = URLsFromDownloadPageWithTitle({urlOf(start), rules, pages});
    EXPECT_EQ(found.title, u"A & B &lt;"_s);
}

TEST(Extraction, RefusesPagesBeyondTheBound) {
    const auto rules = rulesOf(uR"j([{"Source":"h/","Query Cascade":["'(\\w)'"]}])j"_s);
    const auto pages = std::make_shared<MemoryPages>();
    pages->pages[start] = "'a'" + QByteArray(PageRequest().maximumBytes - 3, ' ');
    EXPECT_EQ(URLsFromDownloadPageWithTitle({urlOf(start), rules, pages}).urls.size(), 1U);
    pages->pages[start] += ' ';
    EXPECT_TRUE(URLsFromDownloadPageWithTitle({urlOf(start), rules, pages}).urls.empty());
}

TEST(Extraction, CanBeStoppedInTheMiddleOfAHopelessQuery) {
    const auto rules = rulesOf(uR"j([{"Source":"h/","Query Cascade":["^(?:a|aa)+$"]}])j"_s);
    const auto pages = std::make_shared<MemoryPages>();
    pages->pages[start] = QByteArray(5000, 'a') + "!";
    std::stop_source stop;
    const LogRecorder log;
    std::thread reader([&] {
        const auto found =
            URLsFromDownloadPageWithTitle({urlOf(start), rules, pages, true, stop.get_token()});
        EXPECT_TRUE(found.urls.empty());
    });
    stop.request_stop();
    reader.join();
    EXPECT_TRUE(log.lines().filter(u"too long"_s).isEmpty());
}

TEST(Extraction, RunsInTheBackgroundAndComesBackToTheLoop) {
    support::MainLoop main;
    const auto rules = rulesOf(uR"j([{"Source":"h/","Query Cascade":["'(\\w)'"]}])j"_s);
    const auto pages = std::make_shared<MemoryPages>();
    pages->pages[start] = "'a'";
    std::optional<ExtractedLinks> found;
    std::thread::id thread;
    platform::ThreadPool readers(1);
    readDownloadPageInBackground({urlOf(start), rules, pages}, readers, main.loop,
                                 [&](const ExtractedLinks& links) {
                                     found = links;
                                     thread = std::this_thread::get_id();
                                 });
    ASSERT_TRUE(main.waitUntil([&] { return found.has_value(); }));
    EXPECT_EQ(addressesOf(*found), QStringList{u"http://h/dir/a"_s});
    EXPECT_EQ(thread, std::this_thread::get_id());
}

TEST(PageText, FollowsMarkHeaderAndMetaElement) {
    struct Encoded {
        QByteArray data;
        QString contentType;
        std::optional<QString> text;
    };
    const QByteArray meta = "<meta http-equiv=x content='text/html; charset=windows-1251'>\xE4";
    const std::vector<Encoded> cases{
        {"\xC3\xA4", u""_s, u"ä"_s},
        {"\xEF\xBB\xBF\xC3\xA4", u"text/html; charset=koi8-r"_s, u"ä"_s},
        {QByteArray("\xFF\xFE\xE4\0", 4), u"text/html; charset=utf-8"_s, u"ä"_s},
        {QByteArray("\xFE\xFF\0\xE4", 4), u""_s, u"ä"_s},
        {QByteArray("\xFF\xFE\0\0\xE4\0\0\0", 8), u""_s, u"ä"_s},
        {"\xE4", u"text/html; Charset=\"ISO-8859-1\""_s, u"ä"_s},
        {"\xC3\xA4", u"text/html; charset=ISO-8859-1"_s, u"ä"_s},
        {"\x93\xFA\x96\x7B", u"text/html;charset=Shift_JIS"_s, u"日本"_s},
        {"\x1B$BF|K\\\x1B(B", u"text/html;charset=iso-2022-jp"_s, u"日本"_s},
        {meta, u"text/html"_s, QString::fromLatin1(meta.chopped(1)) + u"д"_s},
        {QByteArray(1024, ' ') + meta, u"text/html"_s, {}},
        {"<meta charset=utf-16>\xC3\xA4", u""_s, u"<meta charset=utf-16>ä"_s},
        {"\xE4", u"text/html; charset=utf-8"_s, {}},
        {"\xE4", u"text/html; charset=../x"_s, {}},
        {"\xE4", u""_s, {}},
        {"", u""_s, u""_s},
    };
    for (const Encoded& each : cases)
        EXPECT_EQ(pageText(each.data, each.contentType), each.text) << each.data.toStdString();
}

}  // namespace
}  // namespace links
