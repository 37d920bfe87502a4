#include <gtest/gtest.h>

#include <QTimeZone>

#include "links/arrays.h"
#include "links/format/byte_counts.h"
#include "links/format/dates.h"
#include "links/format/durations.h"
#include "links/format/formatting_locale.h"
#include "links/format/numbers.h"
#include "links/format/times_of_day.h"
#include "links/names/sort_keys.h"
#include "links/settings.h"
#include "links/text/localization.h"
#include "links/text/substrings.h"
#include "support/printers.h"

using namespace Qt::Literals::StringLiterals;

namespace {

QDateTime local(const QString& iso) {
    return QDateTime::fromString(iso, Qt::ISODate);
}

TEST(Formatting, ByteCounts) {
    struct Case {
        quint64 count;
        quint64 overall;
        QString text;
    };
    const Case cases[] = {
        {0, 0, u"-"_s},
        {0, 10, u"-"_s},
        {999, 0, u"999 Bytes"_s},
        {1000, 0, u"1 KB"_s},
        {1500, 0, u"1.5 KB"_s},
        {1'500'000, 0, u"1.5 MB"_s},
        {1'250'000'000, 0, u"1.25 GB"_s},
        {1'234'567'890, 0, u"1.23 GB"_s},
        {1'125'000'000'000, 0, u"1.125 TB"_s},
        {999'999, 0, u"1,000 KB"_s},
        {2'000'000'000'000'000'000U, 0, u"2 EB"_s},
        {~quint64(0), 0, u"18.44674 EB"_s},
        {1500, 3'000'000, u"1.5 KB"_s},
        {1'500'000, 3'000'000, u"1.5"_s},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(links::partialFileSizeDescriptionWithBytesCount(c.count, c.overall), c.text);
    }
}

TEST(Formatting, Durations) {
    struct Case {
        double seconds;
        QString natural;
        QString fixed;
    };
    const Case cases[] = {
        {0, u"0:00"_s, u"00:00:00"_s},
        {-90, u"1:30"_s, u"00:01:30"_s},
        {59.99, u"0:59"_s, u"00:00:59"_s},
        {3600, u"1:00:00"_s, u"01:00:00"_s},
        {86399, u"23:59:59"_s, u"23:59:59"_s},
        {86400, u"1 day"_s, u"24:00:00"_s},
        {1.04 * 86400, u"1 day"_s, u"24:57:36"_s},
        {1.5 * 86400, u"1.5 days"_s, u"36:00:00"_s},
        {172800, u"2 days"_s, u"48:00:00"_s},
        {864000, u"10 days"_s, u"240:00:00"_s},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(links::durationDescription(false, c.seconds), c.natural);
        EXPECT_EQ(links::durationDescription(true, c.seconds), c.fixed);
    }
    EXPECT_EQ(links::durationDescription(true, std::nan("")), u"00:00:00");
    EXPECT_FALSE(links::durationDescription(false, HUGE_VAL).isEmpty());
}

TEST(Formatting, Numbers) {
    struct Case {
        links::NumberStyle style;
        QVariant number;
        int integerDigits;
        int fractionDigits;
        bool trim;
        QString text;
    };
    const links::NumberStyle english{.localeName = u"en_US"_s};
    const links::NumberStyle german{.localeName = u"de_DE"_s};
    const links::NumberStyle ungrouped{.localeName = u"de_DE"_s, .usesGroupingSeparator = false};
    const links::NumberStyle plain{.localeName = u"de_DE"_s, .isLocalized = false};
    const links::NumberStyle three{.localeName = u"en_US"_s, .automaticFractionDigits = 3};
    const Case cases[] = {
        {english, {}, 1, 1, true, u""_s},
        {english, 1234567, 1, 0, true, u"1,234,567"_s},
        {english, ~quint64(0), 1, 0, true, u"18,446,744,073,709,551,615"_s},
        {english, qint64(-5), 3, 0, true, u"-005"_s},
        {english, 0.5, 1, 0, true, u"1"_s},
        {english, 2.5, 1, 0, true, u"3"_s},
        {english, 1.25, 1, 1, true, u"1.3"_s},
        {english, 1.0, 1, 2, false, u"1.00"_s},
        {english, 1.0, 1, 2, true, u"1"_s},
        {english, 9.999, 1, -1, true, u"10"_s},
        {english, 9.126, 1, -1, true, u"9.13"_s},
        {english, 10.126, 1, -1, true, u"10.1"_s},
        {three, 1.23456, 1, -1, true, u"1.235"_s},
        {german, 1234.5, 1, 1, true, u"1.234,5"_s},
        {ungrouped, 1234.5, 1, 1, true, u"1234,5"_s},
        {plain, 1234.5, 1, 1, true, u"1,234.5"_s},
        {english, 1.0, 1, 100000, true, u"1"_s},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(links::NumberFormatter(c.style).string(c.number, c.integerDigits,
                                                         c.fractionDigits, c.trim),
                  c.text);
    }
    EXPECT_EQ(links::stringWithInteger(-1234), u"-1,234");
    EXPECT_EQ(links::stringWithUnsignedInteger(1234), u"1,234");
    EXPECT_EQ(links::stringWithFloat(2.5, 2, true), u"2.5");
    EXPECT_EQ(links::stringWithFloat(3, 2, false), u"3");
    EXPECT_EQ(links::stringWithFloat(100, 1, false), u"100");
    EXPECT_EQ(links::stringWithFloat(0, 1, false), u"0");
}

TEST(Formatting, LocaleOfTheEnvironment) {
    struct Case {
        const char* value;
        QString name;
    };
    const Case cases[] = {{"de_CH.UTF-8", u"de_CH"_s},
                          {"C.UTF-8", u"en_US"_s},
                          {"POSIX", u"en_US"_s},
                          {"en_US.UTF-8", u"en_US"_s}};
    for (const Case& c : cases) {
        qputenv("LC_ALL", c.value);
        EXPECT_EQ(links::numberLocaleName(), c.name) << c.value;
    }
    qunsetenv("LC_ALL");
    qputenv("LC_TIME", "fr_FR");
    EXPECT_EQ(links::dateLocaleName(), u"fr_FR");
    qunsetenv("LC_TIME");
    qputenv("LC_ALL", "en_US.UTF-8");
}

TEST(Formatting, FuzzyDates) {
    const QDateTime now = local(u"2024-05-15T14:00:00"_s);
    struct Case {
        qint64 secondsAgo;
        QString english;
        QString german;
    };
    const Case cases[] = {
        {-1000, u"just now"_s, u"just now"_s},
        {59, u"just now"_s, u"just now"_s},
        {60, u"1 minute ago"_s, u"1 minute ago"_s},
        {119, u"1 minute ago"_s, u"1 minute ago"_s},
        {120, u"2 minutes ago"_s, u"2 minutes ago"_s},
        {659, u"10 minutes ago"_s, u"10 minutes ago"_s},
        {660, u"today at 1:49 PM"_s, u"heute um 13:49"_s},
        {86400, u"yesterday at 2:00 PM"_s, u"gestern um 14:00"_s},
        {2 * 86400, u"Monday, May 13, 2024 at 2:00 PM"_s, u"vorgestern um 14:00"_s},
        {3 * 86400, u"Sunday, May 12, 2024 at 2:00 PM"_s, u"Sonntag, 12. Mai 2024 um 14:00"_s},
    };
    for (const Case& c : cases) {
        const QDateTime date = now.addSecs(-c.secondsAgo).toUTC();
        QString english = links::fuzzyDescription(date, now, u"en_US"_s);
        english.replace(u'\u202F', u' ');  // Which blank stands before "PM" depends on ICU.
        EXPECT_EQ(english, c.english) << c.secondsAgo;
        EXPECT_EQ(links::fuzzyDescription(date, now, u"de_DE"_s), c.german) << c.secondsAgo;
    }
}

TEST(Formatting, DateFormats) {
    const QDateTime date = local(u"2024-03-09T07:05:00"_s);
    EXPECT_EQ(links::dateStringWithFormat(date, u"yyyy/MM-dd 'at' HH:mm"_s),
              u"2024/03-09 at 07:05");
    EXPECT_EQ(links::dateStringWithFormat(date, u"MMMM"_s, u"de_DE"_s), u"März");
    EXPECT_EQ(links::dateStringWithFormat(date, u"yyyy 'T' jP"_s), u"");
    EXPECT_EQ(links::dateFormatFromTemplate(u"yMd"_s), u"M/d/y");
    EXPECT_EQ(links::dateFormatFromTemplate(u"yMMMMd"_s, u"de_DE"_s), u"d. MMMM y");
}

TEST(Formatting, TimesOfDay) {
    struct Case {
        QString now;
        QString timeOfDay;
        QString next;
        double interval;
    };
    const Case cases[] = {
        {u"2024-05-15T12:00:00"_s, u"2001-01-01T12:00:05"_s, u"2024-05-15T12:00:05"_s, 5},
        {u"2024-05-15T12:00:00"_s, u"2001-07-01T12:00:00"_s, u"2024-05-16T12:00:00"_s, 86400},
        {u"2024-12-31T23:59:59"_s, u"2001-01-01T00:00:00"_s, u"2025-01-01T00:00:00"_s, 1},
        // The night that is an hour longer, and the one that has no 02:30.
        {u"2024-10-26T12:00:00"_s, u"2001-01-01T11:00:00"_s, u"2024-10-27T11:00:00"_s, 24 * 3600},
        {u"2024-03-30T12:00:00"_s, u"2001-01-01T02:30:00"_s, u"2024-03-31T03:30:00"_s, 14.5 * 3600},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(qPrintable(c.now + u' ' + c.timeOfDay));
        const auto next = links::nextDateMatchingTimeOfDayWithTimeIntervalRemaining(
            local(c.timeOfDay), local(c.now));
        EXPECT_EQ(next.date, local(c.next));
        EXPECT_EQ(next.timeIntervalRemaining, c.interval);
    }
    const QDateTime now = local(u"2024-05-15T12:00:00"_s).addMSecs(500);
    EXPECT_EQ(links::timeIntervalToNextDateMatchingTimeOfDay(now.addMSecs(500), now), 86400.5);
    EXPECT_EQ(links::dateWithHour(now.toUTC(), 1, 2, 3), local(u"2024-05-15T01:02:03"_s));
}

TEST(Formatting, SortKeys) {
    auto& defaults = platform::standardDefaults();
    EXPECT_EQ(links::sortPrefixesByForcedRebuild(true),
              (QStringList{u"a "_s, u"an "_s, u"the "_s}));
    EXPECT_EQ(links::sortString(u"The Film"_s), u"Film");
    EXPECT_EQ(links::sortString(u"AN apple"_s), u"apple");
    EXPECT_EQ(links::sortString(u"Theatre"_s), u"Theatre");
    EXPECT_EQ(links::sortString(u"A"_s), u"A");
    defaults.set(links::settings::ignorableSortingPrefixes, QString());
    EXPECT_EQ(links::sortString(u"The Film"_s), u"Film");
    EXPECT_EQ(links::sortPrefixesByForcedRebuild(true), QStringList(u" "_s));
    EXPECT_EQ(links::sortString(u" The Film"_s), u"The Film");
    defaults.removeObject(links::settings::ignorableSortingPrefixes.name());
    EXPECT_EQ(links::sortPrefixesByForcedRebuild(true).size(), 3);
}

TEST(Formatting, SearchAndSubstrings) {
    EXPECT_TRUE(links::isMatchForSearchStrings(u"Crème Brûlée"_s, {u"creme"_s, u"LEE"_s}));
    EXPECT_FALSE(links::isMatchForSearchStrings(u"Crème"_s, {u"creme"_s, u"x"_s}));
    EXPECT_TRUE(links::isMatchForSearchStrings(u""_s, {}));
    EXPECT_EQ(links::substringBeforeSuffix(u"a.b.c"_s, u"."_s, false), u"a");
    EXPECT_EQ(links::substringBeforeSuffix(u"a.b.c"_s, u"."_s, true, false), u"a.b");
    EXPECT_EQ(links::substringAfterPrefix(u"a.b.c"_s, u"."_s, false), u"b.c");
    EXPECT_EQ(links::substringAfterPrefix(u"a.b.c"_s, u"."_s, true, false), u"c");
    EXPECT_EQ(links::substringAfterPrefix(u"abc"_s, u"."_s, true), u"abc");
    EXPECT_EQ(links::substringBeforeSuffix(u"abc"_s, u""_s, false), std::nullopt);
    EXPECT_EQ(links::filledFormat(u"%@ (%lu nested) %@"_s, {u"%@"_s, u"2"_s}), u"%@ (2 nested) %@");
}

TEST(Formatting, Arrays) {
    const std::vector<int> array{1, 2, 3};
    EXPECT_EQ(links::objectsForIndexSet(array, std::vector<std::size_t>{0, 2, 7}),
              (std::vector<int>{1, 3}));
    EXPECT_EQ(links::objectsForIndexSet(array, std::vector<std::size_t>{7}), std::nullopt);
    const auto compare = [](int a, int b) {
        return links::NeighbourOrder{a < b ? -1 : a > b, a / 10 == b / 10};
    };
    const auto isSorted = [&](const std::vector<int>& numbers, bool mustUseCriterion) {
        return links::isEffectivelySorted(numbers, mustUseCriterion, compare);
    };
    EXPECT_FALSE(isSorted({1}, false));
    EXPECT_TRUE(isSorted({1, 2}, false));
    EXPECT_FALSE(isSorted({1, 2}, true));
    EXPECT_TRUE(isSorted({1, 2, 12}, true));
    EXPECT_FALSE(isSorted({1, 12, 2}, false));
}

}  // namespace
