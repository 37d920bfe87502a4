#include <gtest/gtest.h>

#include <QDateTime>
#include <QTemporaryDir>

#include "links/page_rules_support.h"
#include "links/pages/download_page_rule_store.h"
#include "links/settings.h"
#include "platform/base/user_defaults.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

TEST(PageRules, AreRefusedUnlessAllAreWhole) {
    const std::vector<std::pair<QString, bool>> cases{
        {u"[{'Source':'x','Query Cascade':['y']}]"_s, true},
        {u"{'x':{'Query Cascade':['y',['z','(']]}}"_s, false},
        {u"{'x':{'Query Cascade':['y',['z','(w)'],[]]}}"_s, true},
        {u"{}"_s, false},
        {u"[]"_s, false},
        {u"['x']"_s, false},
        {u"[{'Source':'x','Query Cascade':['y']},{}]"_s, false},
        {u"{' ':{'Query Cascade':['y']}}"_s, false},
        {u"{'(':{'Query Cascade':['y']}}"_s, false},
        {u"[{'Source':1,'Query Cascade':['y']}]"_s, false},
        {u"{'x':{'Query Cascade':'y'}}"_s, false},
        {u"{'x':{'Query Cascade':[]}}"_s, false},
        {u"{'x':{'Query Cascade':[' \\n']}}"_s, false},
        {u"{'x':{'Query Cascade':[1]}}"_s, false},
        {u"{'x':{'Query Cascade':[['y',{}]]}}"_s, false},
        {u"{'x':{'Query Cascade':['y'],'Use Source Name':'title:(.*)'}}"_s, true},
        {u"{'x':{'Query Cascade':['y'],'Use Source Name':0}}"_s, true},
        {u"{'x':{'Query Cascade':['y'],'Use Source Name':''}}"_s, false},
        {u"{'x':{'Query Cascade':['y'],'Use Source Name':'('}}"_s, false},
        {u"{'x':{'Query Cascade':['y'],'Use Source Name':[]}}"_s, false},
        {u"{'x':{'Query Cascade':['y'],'Use Source Name':null}}"_s, false},
        {u"{'x':{'Query Cascade':['y'],'Collect All Matches':{}}}"_s, true},
    };
    for (const auto& [text, isAccepted] : cases) {
        QString json = text;
        EXPECT_EQ(rulesOf(json.replace(u'\'', u'"')) != nullptr, isAccepted) << text.toStdString();
    }
    EXPECT_FALSE(DownloadPageRules::fromObject(QVariant()));
    EXPECT_FALSE(DownloadPageRules::fromObject(QDateTime::currentDateTimeUtc()));
}

TEST(PageRules, TheFirstWhoseSourceMatchesSomethingDecides) {
    const auto rules = rulesOf(
        uR"j(
        "^http://h10/" : {"Query Cascade" : ["ten"], "Collect All Matches" : "YES"}
        "^http://H9/(.*)" : {"Query Cascade" : ["nine"], "Use Source Name" : true}
        "^http://h9/a" : {"Query Cascade" : ["never"]}
        "^(x)?" : {"Query Cascade" : ["empty"]}
        "^http://named/" : {"Query Cascade" : ["n"], "Use Source Name" : "title:(.+)"}
        "plain" : {"Query Cascade" : ["p"], "Use Source Name" : false}
    )j"_s);
    ASSERT_TRUE(rules);
    struct Case {
        QString url, query;
        bool collects;
        std::optional<QString> name;
    };
    const std::vector<Case> cases{
        {u"http://h9/a"_s, u"nine"_s, false, u""_s},
        {u"HTTP://h10/"_s, u"ten"_s, true, {}},
        {u"http://named/x"_s, u"n"_s, false, u"title:(.+)"_s},
        {u"http://host/PLAIN"_s, u"p"_s, false, {}},
    };
    for (const Case& each : cases) {
        const DownloadPageRule* rule = rules->ruleForURL(urlOf(each.url));
        ASSERT_TRUE(rule) << each.url.toStdString();
        EXPECT_EQ(rule->queryCascade[0][0].pattern(), each.query);
        EXPECT_EQ(rule->collectAllMatches, each.collects);
        EXPECT_EQ(preservedNamePattern(urlOf(each.url), rules.get()), each.name);
        EXPECT_TRUE(isDownloadPageURL(urlOf(each.url), rules.get()));
    }
    EXPECT_FALSE(isDownloadPageURL(urlOf(u"http://other/"_s), rules.get()));
    EXPECT_FALSE(preservedNamePattern(urlOf(u"http://other/"_s), rules.get()));
    EXPECT_FALSE(isDownloadPageURL(urlOf(u"http://h9/"_s), nullptr));
}

TEST(PageRules, ASlipInTheNameLeavesOutItsRuleAlone) {
    const QString text =
        uR"j([
        {"Source" : "^http://a/", "Query Cascade" : ["a"], "Use Source Name" : "title:("},
        {"Source" : "^http://b/", "Query Cascade" : ["b"], "Use Source Name" : "(.*)"}
    ])j"_s;
    const auto rules = rulesOf(text);
    ASSERT_TRUE(rules);
    EXPECT_EQ(rules->sourcesLeftOut(), QStringList{u"^http://a/"_s});
    EXPECT_FALSE(isDownloadPageURL(urlOf(u"http://a/x"_s), rules.get()));
    EXPECT_TRUE(isDownloadPageURL(urlOf(u"http://b/x"_s), rules.get()));

    const QTemporaryDir folder;
    platform::UserDefaults defaults(folder.path(), u"test"_s);
    defaults.set(settings::downloadPageRules, text);
    const LogRecorder log;
    DownloadPageRuleStore store(defaults);
    EXPECT_TRUE(store.downloadPageRules());
    EXPECT_EQ(log.lines().filter(u"^http://a/"_s).size(), 1);
}

TEST(PageRules, ASourceThatTakesTooLongIsLoggedOnceAndLeftOut) {
    const auto rules = rulesOf(
        uR"j([
        {"Source" : "^http://h/(a+)+$", "Query Cascade" : ["slow"]},
        {"Source" : "^http://h/", "Query Cascade" : ["quick"]}
    ])j"_s);
    ASSERT_TRUE(rules);
    const platform::Url url = urlOf(u"http://h/"_s + QString(200, u'a') + u"!"_s);
    const LogRecorder log;
    for (int i = 0; i < 20; ++i) {
        const DownloadPageRule* rule = rules->ruleForURL(url);
        ASSERT_TRUE(rule);
        EXPECT_EQ(rule->queryCascade[0][0].pattern(), u"quick"_s);
    }
    EXPECT_EQ(log.lines().size(), 1);
}

TEST(PageRuleStore, TakesTheUsersTextAndElseTheBuiltInOne) {
    const QTemporaryDir folder;
    platform::UserDefaults defaults(folder.path(), u"test"_s);
    const QString key = settings::downloadPageRules.name();
    const platform::Url product = urlOf(u"https://www.tarnworks.com/orlop/old"_s);
    const platform::Url mine = urlOf(u"http://mine/"_s);
    const auto isPage = [](DownloadPageRuleStore& store, const platform::Url& url) {
        return isDownloadPageURL(url, store.rulesThatMayConcern(url).get());
    };
    for (const QVariant& stored : {QVariant(), QVariant(u""_s), QVariant(qint64{7})}) {
        defaults.setObject(key, stored);
        DownloadPageRuleStore store(defaults);
        EXPECT_TRUE(isPage(store, product));
        EXPECT_FALSE(isPage(store, urlOf(u"https://www.tarnworks.com/orlopping"_s)));
    }
    const QVariantMap rule{{u"Query Cascade"_s, QVariantList{u"q"_s}}};
    for (const QVariant& structure :
         {QVariant(QVariantMap{{u"mine"_s, rule}}),
          QVariant(QVariantList{QVariantMap{{u"Source"_s, u"mine"_s},
                                            {u"Query Cascade"_s, QVariantList{u"q"_s}}}})}) {
        defaults.setObject(key, structure);
        DownloadPageRuleStore store(defaults);
        EXPECT_TRUE(isPage(store, mine)) << "a structure counts as well";
        EXPECT_TRUE(rulesOf(store.ruleText())->ruleForURL(mine)) << "and can be edited";
    }
    DownloadPageRuleStore store(defaults);
    store.setRuleText(u"\"mine\" : {\n\"Query Cascade\" : [\"q\"]\n}"_s);
    EXPECT_TRUE(isPage(store, mine));
    EXPECT_FALSE(isPage(store, product));
    EXPECT_TRUE(defaults.hasValueForKey(key));
    store.setRuleText(u"no rules"_s);
    EXPECT_EQ(store.ruleText(), u"no rules"_s);
    EXPECT_FALSE(store.downloadPageRules());
    store.setRuleText(u""_s);
    EXPECT_FALSE(defaults.hasValueForKey(key));
    EXPECT_EQ(store.ruleText(), defaultDownloadPageRuleText());
    EXPECT_TRUE(isPage(store, product));
}

}  // namespace
}  // namespace links
