#include "platform/base/user_defaults.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include "platform/base/arguments.h"
#include "platform/base/defaults_command.h"
#include "platform/base/utc.h"
#include "platform/base/values.h"
#include "platform/files/files.h"
#include "platform/files/property_list.h"
#include "support/main_loop.h"
#include "support/no_descriptors.h"

using namespace Qt::Literals::StringLiterals;
using platform::UserDefaults;

namespace {

struct DefaultsTest : testing::Test {
    support::MainLoop main;
    QTemporaryDir folder;
    const QString domain = u"test"_s;
    const QString path = folder.filePath(u"test.plist"_s);
    UserDefaults defaults{folder.path(), domain, &main.loop};

    [[nodiscard]] QVariantMap onDisk() const {
        return platform::readPropertyList(platform::readFile(path, 1'000'000).data).value.toMap();
    }
    void writeByHand(const QByteArray& body) const {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("<plist>" + body + "</plist>");
    }
};

TEST_F(DefaultsTest, ArgumentsWinOverStoredOverRegistered) {
    EXPECT_FALSE(defaults.hasValueForKey(u"k"_s));
    defaults.registerDefaults({{u"k"_s, 1}});
    defaults.registerDefaults({{u"k"_s, 2}, {u"other"_s, 1}});
    EXPECT_EQ(defaults.integerForKey(u"k"_s), 2);
    defaults.setObject(u"k"_s, 3);
    EXPECT_EQ(defaults.integerForKey(u"k"_s), 3);
    defaults.setArguments({{u"k"_s, u"4"_s}});
    EXPECT_EQ(defaults.integerForKey(u"k"_s), 4);
    EXPECT_EQ(defaults.storedValues(), QVariantMap({{u"k"_s, 3}}));
    defaults.setArguments({});
    defaults.removeObject(u"k"_s);
    EXPECT_EQ(defaults.integerForKey(u"k"_s), 2);
}

const platform::Setting<qint64> channels{
    u"Channels", 4, true, "", {.lowest = 2, .below = 5, .highest = 9}};
const platform::Setting<double> pause{u"Pause", 1.5, false, "", {.lowest = 0.5}};
const platform::Setting<QString> label{u"Label", u"none"_s, true, ""};

TEST_F(DefaultsTest, TableOfSettingsRegistersWhatIsDeclaredSo) {
    platform::registerSettings(defaults);
    EXPECT_EQ(defaults.integerForKey(channels.name()), 4);
    EXPECT_EQ(defaults.stringForKey(label.name()), u"none"_s);
    EXPECT_FALSE(defaults.hasValueForKey(pause.name()));
    EXPECT_EQ(defaults.get(pause), 1.5);
}

TEST_F(DefaultsTest, ReadingStaysWithinTheLimitsDeclared) {
    for (const auto& [stored, read] : std::initializer_list<std::pair<qint64, qint64>>{
             {1, 5}, {2, 2}, {9, 9}, {10, 9}, {-1, 5}}) {
        defaults.set(channels, stored);
        EXPECT_EQ(defaults.get(channels), read) << stored;
        EXPECT_EQ(defaults.integerForKey(channels.name()), stored) << "kept as it was set";
    }
    for (const auto& [stored, read] : std::initializer_list<std::pair<double, double>>{
             {0.25, 0.5}, {0.5, 0.5}, {1e9, 1e9}, {qQNaN(), 0.5}}) {
        defaults.set(pause, stored);
        EXPECT_EQ(defaults.get(pause), read) << stored;
    }
}

TEST_F(DefaultsTest, WritesShortlyAfterAndOnlyOnce) {
    for (int i = 0; i < 100; ++i)
        defaults.setObject(QString::number(i), i);
    main.settle();
    EXPECT_FALSE(QFile::exists(path));
    main.advance(1);
    EXPECT_EQ(onDisk().size(), 100);
    EXPECT_EQ(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther),
              QFile::Permissions());
    const QDateTime written = QFileInfo(path).lastModified();
    defaults.setObject(u"7"_s, 7);
    main.advance(1);
    EXPECT_EQ(QFileInfo(path).lastModified(), written);
    EXPECT_EQ(main.loop.nextDeadline(), std::nullopt);
}

TEST_F(DefaultsTest, SeesWhatAnotherProgramWroteAtTheNextReading) {
    defaults.registerDefaults({{u"k"_s, u"registered"_s}});
    writeByHand("<dict><key>k</key><string>by hand</string></dict>");
    EXPECT_EQ(defaults.stringForKey(u"k"_s), u"by hand"_s);
    writeByHand("<dict/>");
    EXPECT_EQ(defaults.stringForKey(u"k"_s), u"registered"_s);
    UserDefaults other(folder.path(), domain);
    other.setObject(u"k"_s, u"other"_s);
    EXPECT_EQ(defaults.stringForKey(u"k"_s), u"other"_s);
    QFile::remove(path);
    EXPECT_EQ(defaults.stringForKey(u"k"_s), u"registered"_s);
}

TEST_F(DefaultsTest, TwoWritersKeepEachOthersKeys) {
    UserDefaults other(folder.path(), domain);
    other.setObject(u"gone"_s, 1);
    other.setObject(u"both"_s, 1);
    defaults.setObject(u"mine"_s, 1);
    defaults.setObject(u"both"_s, 2);
    defaults.removeObject(u"gone"_s);
    other.setObject(u"theirs"_s, 1);
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(onDisk(), QVariantMap({{u"mine"_s, 1}, {u"theirs"_s, 1}, {u"both"_s, 2}}));
    EXPECT_EQ(other.integerForKey(u"both"_s), 2);
}

TEST_F(DefaultsTest, KeepsADamagedFileAsideAndTheValuesInMemory) {
    defaults.setObject(u"k"_s, 1);
    defaults.synchronize();
    writeByHand("<dict><key>k</key>");
    EXPECT_EQ(defaults.integerForKey(u"k"_s), 1);
    EXPECT_EQ(QDir(folder.path()).entryList({u"test.plist.damaged-*"_s}).size(), 1);
    main.advance(1);
    EXPECT_EQ(onDisk(), QVariantMap({{u"k"_s, 1}}));
    defaults.setObject(u"new"_s, 2);
    defaults.synchronize();
    EXPECT_EQ(onDisk(), QVariantMap({{u"k"_s, 1}, {u"new"_s, 2}}));
}

TEST_F(DefaultsTest, AFileThatCannotBeReadIsNeitherSetAsideNorWrittenOver) {
    writeByHand("<dict><key>k</key><integer>1</integer></dict>");
    {
        const support::NoDescriptors none;
        EXPECT_EQ(defaults.integerForKey(u"k"_s), 0);
        defaults.setObject(u"new"_s, 2);
        EXPECT_FALSE(defaults.synchronize());
    }
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(onDisk(), QVariantMap({{u"k"_s, 1}, {u"new"_s, 2}}));
    EXPECT_EQ(QDir(folder.path()).entryList({u"test.plist.damaged-*"_s}).size(), 0);
}

TEST_F(DefaultsTest, AFailedWriteIsTriedAgain) {
    QDir().mkdir(path);
    defaults.setObject(u"k"_s, 1);
    EXPECT_FALSE(defaults.synchronize()) << "what cannot be read is left alone";
    EXPECT_TRUE(QFileInfo(path).isDir());
    ASSERT_TRUE(QDir(folder.path()).removeRecursively());
    defaults.setObject(u"k"_s, 2);
    EXPECT_FALSE(defaults.synchronize());
    ASSERT_TRUE(QDir().mkpath(folder.path()));
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(onDisk(), QVariantMap({{u"k"_s, 2}}));
}

TEST_F(DefaultsTest, ObserversHearOfEachChangeOfAValueInForce) {
    QStringList heard;
    platform::Observation observation =
        defaults.observe([&](const QString& key) { heard.append(key); });
    const auto take = [&] {
        main.settle();
        heard.sort();
        return std::exchange(heard, {});
    };
    defaults.setObject(u"a"_s, 1);
    EXPECT_EQ(take(), QStringList{u"a"_s});
    defaults.setObject(u"a"_s, 1);
    EXPECT_EQ(take(), QStringList());
    defaults.setArguments({{u"a"_s, 5}});
    EXPECT_EQ(take(), QStringList{u"a"_s});
    defaults.setObject(u"a"_s, 2);
    EXPECT_EQ(take(), QStringList()) << "the argument is still in force";
    main.advance(1);
    writeByHand("<dict><key>a</key><integer>3</integer><key>b</key><true/></dict>");
    EXPECT_TRUE(defaults.boolForKey(u"b"_s));
    EXPECT_EQ(take(), QStringList{u"b"_s});
    observation = {};
    defaults.setObject(u"b"_s, 2);
    EXPECT_EQ(take(), QStringList());
}

TEST_F(DefaultsTest, AnObservationMayEndInTheMiddleAndOutliveWhatIsObserved) {
    auto observed = std::make_unique<UserDefaults>(folder.path(), u"observed"_s, &main.loop);
    int first = 0, second = 0;
    platform::Observation ends, ended;
    ends = observed->observe([&](const QString&) {
        ++first;
        ends = {};
        ended = {};
    });
    ended = observed->observe([&](const QString&) { ++second; });
    const platform::Observation stays = observed->observe([&](const QString&) { second += 10; });
    for (const int value : {1, 2}) {
        observed->setObject(u"a"_s, value);
        main.settle();
    }
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 20);
    observed.reset();
}

TEST(DefaultsInQt, ObserversHearOfAnEditThatNobodyReads) {
    int count = 1;
    char name[] = "test";
    char* arguments[] = {name, nullptr};
    const QCoreApplication application(count, arguments);
    platform::SystemClock clock;
    platform::RunLoop loop(clock);
    const platform::QtRunLoopDriver driver(loop);
    const QTemporaryDir folder;
    UserDefaults defaults(folder.path(), u"test"_s, &loop);
    QEventLoop events;
    QString heard;
    const platform::Observation observation = defaults.observe([&](const QString& key) {
        heard = key;
        events.quit();
    });
    UserDefaults other(folder.path(), u"test"_s);
    QTimer::singleShot(0, &events, [&] { other.setObject(u"k"_s, 1); });
    QTimer::singleShot(20'000, &events, [&] { events.quit(); });
    events.exec();
    EXPECT_EQ(heard, u"k"_s);
}

TEST_F(DefaultsTest, StoresFoldersAndArchives) {
    defaults.setFolderPath(u"f"_s, QDir::homePath() + u"/Stuff"_s);
    EXPECT_EQ(defaults.stringForKey(u"f"_s), u"~/Stuff"_s);
    EXPECT_EQ(defaults.folderPathForKey(u"f"_s, {}), QDir::homePath() + u"/Stuff"_s);
    EXPECT_EQ(defaults.folderPathForKey(u"g"_s, u"~/Downloads"_s),
              QDir::homePath() + u"/Downloads"_s);
    const QDateTime date = QDateTime::fromMSecsSinceEpoch(1'799'999'999'123, platform::utc);
    defaults.archiveObject(u"d"_s, date);
    EXPECT_EQ(defaults.objectForKey(u"d"_s).typeId(), QMetaType::QByteArray);
    EXPECT_EQ(defaults.unarchivedObjectForKey(u"d"_s).toDateTime(), date);
    for (const char* foreign : {"", "bplist00", "<plist><true/></plist>"})
        EXPECT_FALSE(platform::valueFromArchivedData(foreign).isValid());
}

TEST(Values, AreConvertedWhereThatMakesSense) {
    const QList<std::tuple<QVariant, bool, qint64, QString>> cases{
        {u"YES"_s, true, 0, u"YES"_s},
        {u"true"_s, true, 0, u"true"_s},
        {u"NO"_s, false, 0, u"NO"_s},
        {u" 12 "_s, true, 12, u" 12 "_s},
        {u"-1.9"_s, true, -1, u"-1.9"_s},
        {u"0"_s, false, 0, u"0"_s},
        {u"9223372036854775807"_s, true, std::numeric_limits<qint64>::max(),
         u"9223372036854775807"_s},
        {1e300, true, std::numeric_limits<qint64>::max(), u"1e+300"_s},
        {2.5, true, 2, u"2.5"_s},
        {true, true, 1, u"1"_s},
        {QVariantList{1}, false, 0, QString()},
        {QByteArray("1"), false, 0, QString()},
        {QVariant(), false, 0, QString()},
    };
    for (const auto& [value, asBool, asInteger, asString] : cases) {
        EXPECT_EQ(platform::boolValue(value), asBool) << value.typeName();
        EXPECT_EQ(platform::integerValue(value), asInteger) << value.typeName();
        EXPECT_EQ(platform::stringValue(value), asString) << value.typeName();
    }
    EXPECT_EQ(platform::stringListValue(QVariantList{u"a"_s, 1}), QStringList());
    EXPECT_EQ(platform::stringListValue(QVariantList{u"a"_s}), QStringList{u"a"_s});
    EXPECT_EQ(platform::mapValue(u"a"_s), QVariantMap());
}

TEST(Arguments, AreSplitIntoDefaultsAndTheRest) {
    const auto parsed = platform::parseArguments(
        {u"http://a.example/"_s, u"-Auto-Start"_s, u"NO"_s, u"--version"_s, u"-Auto-Retreat"_s,
         u"-1"_s, u"-Rules"_s, u"<array><string>x</string></array>"_s, u"-"_s, u"-Bad"_s,
         u"<array>"_s, u"--"_s, u"-file"_s, u"x"_s});
    EXPECT_EQ(parsed.defaults, QVariantMap({{u"Auto-Start"_s, u"NO"_s},
                                            {u"Auto-Retreat"_s, u"-1"_s},
                                            {u"Rules"_s, QVariantList{u"x"_s}},
                                            {u"Bad"_s, u"<array>"_s}}));
    EXPECT_EQ(parsed.rest,
              QStringList({u"http://a.example/"_s, u"--version"_s, u"-"_s, u"-file"_s, u"x"_s}));
    EXPECT_EQ(platform::parseArguments({u"-Lonely"_s}).rest, QStringList{u"-Lonely"_s});
}

struct DefaultsCommand : testing::Test {
    QTemporaryDir folder;
    platform::UserDefaults defaults{folder.path(), u"test"_s};

    platform::CommandResult run(const QString& line) {
        return platform::runDefaultsCommand(line.split(u' ', Qt::SkipEmptyParts), defaults);
    }
};

TEST_F(DefaultsCommand, WritesTypedValues) {
    const QList<std::pair<QString, QVariant>> cases{
        {u"-bool NO"_s, false},
        {u"-int -7"_s, qint64{-7}},
        {u"-float 2"_s, 2.0},
        {u"-string -int"_s, u"-int"_s},
        {u"text"_s, u"text"_s},
        {u"-5"_s, u"-5"_s},
        {u"<true/>"_s, true},
        {u"-array"_s, QVariantList()},
        {u"-array a -int 1 -bool yes"_s, QVariantList{u"a"_s, qint64{1}, true}},
        {u"-dict Hour -int 22 Days -array -int 1"_s,
         QVariantMap{{u"Hour"_s, qint64{22}}, {u"Days"_s, QVariantList{qint64{1}}}}},
    };
    for (const auto& [words, value] : cases) {
        EXPECT_EQ(run(u"write k "_s + words).status, 0) << words.toStdString();
        const QVariant stored =
            platform::UserDefaults(folder.path(), u"test"_s).objectForKey(u"k"_s);
        EXPECT_EQ(stored, value) << words.toStdString();
        EXPECT_EQ(stored.typeId(), value.typeId()) << words.toStdString();
    }
}

TEST_F(DefaultsCommand, RefusesWrongUsageAndChangesNothing) {
    for (const QString& line :
         {u""_s, u"shout"_s, u"read a b"_s, u"write"_s, u"write k"_s, u"write k -bool"_s,
          u"write k -bool maybe"_s, u"write k -int 1.5"_s, u"write k -float x"_s, u"write k a b"_s,
          u"write k -dict Hour"_s, u"write k -array -int x"_s, u"write k <array>"_s, u"delete"_s,
          u"list x"_s, u"-suite"_s, u"-suite ../x list"_s}) {
        const auto result = run(line);
        EXPECT_EQ(result.status, 2) << line.toStdString();
        EXPECT_TRUE(result.errors.contains(u"Usage: orlop-defaults"_s)) << line.toStdString();
        EXPECT_TRUE(result.output.isEmpty());
    }
    EXPECT_TRUE(defaults.storedValues().isEmpty());
}

TEST_F(DefaultsCommand, ReadsListsAndDeletes) {
    EXPECT_EQ(run(u"read k"_s).status, 1);
    EXPECT_EQ(run(u"delete k"_s).status, 1);
    run(u"write k -bool true"_s);
    run(u"write Rules -array a b"_s);
    EXPECT_EQ(run(u"read k"_s).output, u"true\n"_s);
    EXPECT_TRUE(run(u"read Rules"_s).output.contains(u"\t<string>a</string>\n"_s));
    EXPECT_TRUE(run(u"read"_s).output.contains(u"\t<key>k</key>\n\t<true/>\n"_s));
    EXPECT_EQ(run(u"list"_s).output, u"Rules: array of 2\nk: bool true\n"_s);
    EXPECT_EQ(run(u"delete k"_s).status, 0);
    EXPECT_EQ(run(u"list"_s).output, u"Rules: array of 2\n"_s);
}

TEST_F(DefaultsCommand, WorksOnASuite) {
    EXPECT_EQ(run(u"-suite shared write k v"_s).status, 0);
    EXPECT_EQ(run(u"-suite shared read k"_s).output, u"v\n"_s);
    EXPECT_EQ(run(u"read k"_s).status, 1);
    EXPECT_TRUE(QFile::exists(folder.filePath(u"shared.plist"_s)));
}

}  // namespace
