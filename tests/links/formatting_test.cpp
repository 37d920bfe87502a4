#include <gtest/gtest.h>

#include "links/format/byte_counts.h"
#include "links/format/dates.h"
#include "links/format/durations.h"
#include "links/format/formatting_locale.h"
#include "links/format/numbers.h"
#include "links/names/sort_keys.h"
#include "links/settings.h"
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
    const Case cases[] = {
        {english, {}, 1, 1, true, u""_s},
        {english, 1234567, 1, 0, true, u"1,234,567"_s},
        {english, ~quint64(0), 1, 0, true, u"18,446,744,073,709,551,615"_s},
        {english, 0.5, 1, 0, true, u"1"_s},
        {english, 2.5, 1, 0, true, u"3"_s},
        {english, 1.25, 1, 1, true, u"1.3"_s},
        {english, 1.0, 1, 2, false, u"1.00"_s},
        {english, 1.0, 1, 2, true, u"1"_s},
        {english, 9.999, 1, -1, true, u"10"_s},
        {english, 9.126, 1, -1, true, u"9.13"_s},
        {english, 10.126, 1, -1, true, u"10.1"_s},
        {german, 1234.5, 1, 1, true, u"1.234,5"_s},
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

TEST(Formatting, SortKeys) {
    platform::UserDefaults& defaults = platform::standardDefaults();
    links::setSortPrefixes(links::sortPrefixesString(defaults));
    EXPECT_EQ(links::sortPrefixes(), (QStringList{u"a "_s, u"an "_s, u"the "_s}));
    EXPECT_EQ(links::sortString(u"The Film"_s), u"Film");
    EXPECT_EQ(links::sortString(u"AN apple"_s), u"apple");
    EXPECT_EQ(links::sortString(u"Theatre"_s), u"Theatre");
    EXPECT_EQ(links::sortString(u"A"_s), u"A");
    defaults.set(links::settings::ignorableSortingPrefixes, QString());
    links::setSortPrefixes(links::sortPrefixesString(defaults));
    EXPECT_EQ(links::sortString(u" The Film"_s), u"The Film");
    defaults.removeObject(links::settings::ignorableSortingPrefixes.name());
    links::setSortPrefixes(links::sortPrefixesString(defaults));
    EXPECT_EQ(links::sortPrefixes().size(), 3);
}

}  // namespace
