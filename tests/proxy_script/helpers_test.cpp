#include <gtest/gtest.h>

#include <QCoreApplication>

#include "proxy_script/name_lookup.h"
#include "proxy_script/script_engine.h"

namespace {

using namespace Qt::Literals::StringLiterals;

/// The 29th of February 2024, a Thursday, 13:07:30 here and 22:07:30 on the day before in GMT.
const QString clockOfTheScript =
    uR"(
    Date = function () {};
    Date.prototype = {
        getDay: () => 4, getDate: () => 29, getMonth: () => 1, getFullYear: () => 2024,
        getHours: () => 13, getMinutes: () => 7, getSeconds: () => 30,
        getUTCDay: () => 3, getUTCDate: () => 28, getUTCMonth: () => 1,
        getUTCFullYear: () => 2024, getUTCHours: () => 22, getUTCMinutes: () => 7,
        getUTCSeconds: () => 30,
    };
)"_s;

class ProxyScriptHelpers : public ::testing::Test {
protected:
    int argc = 0;
    QCoreApplication application{argc, nullptr};
    proxy_script::NameLookup names;
    QStringList alerts;

    QString valueOf(const QString& expression) {
        proxy_script::ScriptEngine engine(names, [this](const QString& text) { alerts << text; });
        const auto outcome = engine.findProxy(
            clockOfTheScript +
                u"function FindProxyForURL(url, host) { return String(%1); }"_s.arg(expression),
            u"http://www.example.org/a"_s, u"www.example.org"_s);
        return outcome.error.isEmpty() ? outcome.result : u"! "_s + outcome.error;
    }
};

TEST_F(ProxyScriptHelpers, AnswerAsTheyAreKnownTo) {
    const std::vector<std::pair<QString, QString>> table = {
        {u"isPlainHostName('www')"_s, u"true"_s},
        {u"isPlainHostName(host)"_s, u"false"_s},
        {u"isPlainHostName('::1')"_s, u"false"_s},
        {u"dnsDomainIs(host, '.example.org')"_s, u"true"_s},
        {u"dnsDomainIs('WWW.Example.ORG', '.example.org')"_s, u"true"_s},
        {u"dnsDomainIs('www.example.com', '.example.org')"_s, u"false"_s},
        {u"localHostOrDomainIs('www', 'www.example.org')"_s, u"true"_s},
        {u"localHostOrDomainIs(host, 'www.example.org')"_s, u"true"_s},
        {u"localHostOrDomainIs('www.example.com', 'www.example.org')"_s, u"false"_s},
        {u"localHostOrDomainIs('ww', 'www.example.org')"_s, u"false"_s},
        {u"dnsDomainLevels('www') + dnsDomainLevels(host) * 10"_s, u"20"_s},
        {u"isResolvable('localhost')"_s, u"true"_s},
        {u"isResolvable('name.invalid')"_s, u"false"_s},
        {u"isResolvable('?')"_s, u"false"_s},
        {u"dnsResolve('127.0.0.1')"_s, u"127.0.0.1"_s},
        {u"dnsResolve('name.invalid')"_s, u"null"_s},
        {u"dnsResolve('a\\nb') + dnsResolve('x'.repeat(10000)) + dnsResolve('')"_s, u"0"_s},
        {u"/^[0-9a-f.:]+$/.test(myIpAddress())"_s, u"true"_s},
        {u"isInNet('198.95.249.79', '198.95.249.79', '255.255.255.255')"_s, u"true"_s},
        {u"isInNet('198.95.6.8', '198.95.0.0', '255.255.0.0')"_s, u"true"_s},
        {u"isInNet('198.96.6.8', '198.95.0.0', '255.255.0.0')"_s, u"false"_s},
        {u"isInNet('localhost', '127.0.0.0', '255.0.0.0')"_s, u"true"_s},
        {u"isInNet('1.2.3.256', '1.2.3.0', '255.255.255.0')"_s, u"false"_s},
        {u"isInNet('name.invalid', '0.0.0.0', '0.0.0.0')"_s, u"false"_s},
        {u"shExpMatch('http://home/people/ari/index.html', '*/ari/*')"_s, u"true"_s},
        {u"shExpMatch('http://home/people/bob/index.html', '*/ari/*')"_s, u"false"_s},
        {u"shExpMatch('a.c', 'a?c') && !shExpMatch('abc', 'a.c')"_s, u"true"_s},
        {u"shExpMatch('', '*') && !shExpMatch('x', '') && shExpMatch('a[b](c)', '*[b](*')"_s,
         u"true"_s},
        {u"shExpMatch('a'.repeat(3000), '*a*a*a*a*a*a*a*a*b')"_s, u"false"_s},
        {u"shExpMatch('www.b.de', '*.(a|b|).de') && shExpMatch('www..de', '*.(a|b|).de')"_s,
         u"true"_s},
        {u"shExpMatch('www.c.de', '*.(a|b).de')"_s, u"false"_s},
        {u"shExpMatch('www.c.de', '(*.(a|c).de|*.org)') && shExpMatch('x.org', '(*.a|*.org)')"_s,
         u"true"_s},
        {u"shExpMatch('a|b', 'a|b') && shExpMatch('(a', '(a') && shExpMatch('a)', 'a)')"_s,
         u"true"_s},
        {u"shExpMatch('a'.repeat(500) + 'c', '(a|a)'.repeat(500) + 'b')"_s, u"false"_s},
        {u"isInNetEx('198.95.249.79', '198.95.249.0/24')"_s, u"true"_s},
        {u"isInNetEx('198.95.250.79', '198.95.249.0/24')"_s, u"false"_s},
        {u"isInNetEx('localhost', '127.0.0.0/8') || isInNetEx('localhost', '::1/128')"_s,
         u"false"_s},
        {u"isInNetEx('2001:db8:1::1', '2001:db8::/32')"_s, u"true"_s},
        {u"isInNetEx('2001:db9::1', '2001:db8::/32')"_s, u"false"_s},
        {u"isInNetEx('::ffff:10.0.0.1', '::ffff:0:0/96')"_s, u"true"_s},
        {u"isInNetEx('10.0.0.1', '::/0') || isInNetEx('::1', '0.0.0.0/0')"_s, u"false"_s},
        {u"isInNetEx('::1', '::1') || isInNetEx('::1', '::/129') || isInNetEx('::1', 'x/1')"_s,
         u"false"_s},
        {u"dnsResolveEx('127.0.0.1') + dnsResolveEx('::1')"_s, u"127.0.0.1::1"_s},
        {u"dnsResolveEx('name.invalid')"_s, u""_s},
        {u"isResolvableEx('::1') && isResolvableEx('localhost') && !isResolvableEx('x.invalid')"_s,
         u"true"_s},
        {u"/^[0-9a-f.:;]+$/.test(myIpAddressEx())"_s, u"true"_s},
        {u"sortIpAddressList('10.2.3.9;2001:4898:28:3:201:2ff:feea:fc14; ::1;127.0.0.1;::9')"_s,
         u"::1;::9;2001:4898:28:3:201:2ff:feea:fc14;10.2.3.9;127.0.0.1"_s},
        {u"sortIpAddressList('x;::1') || sortIpAddressList('')"_s, u"false"_s},
        {u"getClientVersion()"_s, u"1.0"_s},
        // As scripts could be written before there was a strict mode.
        {u"010 + 0644 + 09 + 0.5"_s, u"437.5"_s},
        {u".05 === 5 / 100 && .08 === 8 / 100 && 1e-07 === 1 / 1e+07 && 0xe-07 === 7"_s, u"true"_s},
        {u"'\\101\\1012\\0\\60\\377\\400'.length + '\\101'"_s, u"8A"_s},
        {u"\"it's \\47\" + '010' + `\\u0041 ${010}`"_s, u"it's '010A 8"_s},
        {u"/[/'\"]010/.test('/010') && 4 / 2 / 01 === 2 /* 010 ' */"_s, u"true"_s},
        {u"weekdayRange('MON', 'FRI')"_s, u"true"_s},
        {u"weekdayRange('thu')"_s, u"true"_s},
        {u"weekdayRange('THU', 'GMT')"_s, u"false"_s},
        {u"weekdayRange('SAT', 'WED')"_s, u"false"_s},
        {u"weekdayRange('SAT', 'WED', 'GMT')"_s, u"true"_s},
        {u"weekdayRange('DAY') || weekdayRange()"_s, u"false"_s},
        {u"dateRange(29)"_s, u"true"_s},
        {u"dateRange(29, 'GMT')"_s, u"false"_s},
        {u"dateRange(1, 15)"_s, u"false"_s},
        {u"dateRange(20, 5)"_s, u"true"_s},
        {u"dateRange('FEB')"_s, u"true"_s},
        {u"dateRange('JAN', 'MAR')"_s, u"true"_s},
        {u"dateRange('OCT', 'JAN')"_s, u"false"_s},
        {u"dateRange(2024)"_s, u"true"_s},
        {u"dateRange(2020, 2023)"_s, u"false"_s},
        {u"dateRange(1, 'JAN', 29, 'FEB')"_s, u"true"_s},
        {u"dateRange(1, 'MAR', 15, 'AUG')"_s, u"false"_s},
        {u"dateRange(24, 'DEC', 5, 'MAR')"_s, u"true"_s},
        {u"dateRange('OCT', 2023, 'MAR', 2024)"_s, u"true"_s},
        {u"dateRange('MAR', 2024, 'OCT', 2025)"_s, u"false"_s},
        {u"dateRange(29, 'FEB', 2024, 1, 'MAR', 2024)"_s, u"true"_s},
        {u"dateRange(1, 'JUN', 1995, 28, 'FEB', 2024)"_s, u"false"_s},
        {u"dateRange() || dateRange('x') || dateRange(1, 'MAR')"_s, u"false"_s},
        {u"timeRange(13)"_s, u"true"_s},
        {u"timeRange(13, 'GMT')"_s, u"false"_s},
        {u"timeRange(9, 13)"_s, u"true"_s},
        {u"timeRange(22, 6)"_s, u"false"_s},
        {u"timeRange(22, 6, 'GMT')"_s, u"true"_s},
        {u"timeRange(13, 0, 13, 7)"_s, u"true"_s},
        {u"timeRange(13, 8, 14, 0)"_s, u"false"_s},
        {u"timeRange(13, 7, 30, 13, 7, 31)"_s, u"true"_s},
        {u"timeRange(0, 0, 0, 13, 7, 29)"_s, u"false"_s},
        {u"timeRange() || timeRange('x') || timeRange(1, 2, 3)"_s, u"false"_s},
        {u"alert('said') + typeof Qt + typeof system"_s, u"undefinedundefinedundefined"_s},
    };
    for (const auto& [expression, value] : table)
        EXPECT_EQ(valueOf(expression), value) << expression.toStdString();
    EXPECT_EQ(alerts, QStringList{u"said"_s});
}

TEST_F(ProxyScriptHelpers, ScriptsMayBeOldAndLarge) {
    const auto answerOf = [this](const QString& script) {
        proxy_script::ScriptEngine engine(names, {});
        const auto outcome = engine.findProxy(script, u"http://h77.example/"_s, u"h77.example"_s);
        return outcome.error.isEmpty() ? outcome.result : u"! "_s + outcome.error;
    };
    // As lists of blocked hosts are made.
    QString list = u"<!-- old\nvar D = {"_s;
    for (int i = 0; list.size() < 360'000; ++i)
        list += u"\"h%1.example\": 0%2,\n"_s.arg(i).arg(i % 8);
    list +=
        u"};\nfunction FindProxyForURL(url, host) {\n"
        "  if (D.hasOwnProperty(host)) { var found = 010; }\n"
        "  with ({ other: 'DIRECT' }) { return found ? 'PROXY p:010' : other; }\n}\n--> end\n"_s;
    EXPECT_EQ(answerOf(list), u"PROXY p:010"_s);
    EXPECT_EQ(answerOf(u"function FindProxyForURLEx(url, host) { return 'PROXY ' + host; }"_s),
              u"PROXY h77.example"_s);
    EXPECT_TRUE(answerOf(u"'\\"_s).startsWith(u'!'));
    EXPECT_TRUE(answerOf(u"/* 010"_s).startsWith(u'!'));
}

}  // namespace
