#include "platform/base/defaults_command.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "platform/base/user_defaults.h"

using namespace Qt::Literals::StringLiterals;

namespace {

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
