#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include "platform/files/files.h"
#include "platform/net/authorities.h"

using namespace Qt::Literals::StringLiterals;

namespace {

TEST(AuthoritiesTest, ABundleStandsInForWhatIsMissingAlone) {
    const QTemporaryDir folder;
    const auto place = [&](const QString& name) { return folder.filePath(name); };
    const QString absent = place(u"absent"_s), builtIn = place(u"built-in"_s),
                  second = place(u"second"_s), third = place(u"third"_s);
    const QStringList bundles{place(u"first"_s), folder.path(), second, third};
    const auto standIn = [&](const platform::BuiltInAuthorities& authorities) {
        return platform::standInAuthorities(authorities, bundles);
    };
    EXPECT_EQ(standIn({absent, {}}), QString()) << "there is none";
    for (const QString& path : {builtIn, second, third})
        ASSERT_FALSE(platform::writeFileAtomically(path, "certificates"));
    EXPECT_EQ(standIn({builtIn, {}}), QString());
    EXPECT_EQ(standIn({builtIn, absent}), QString());
    EXPECT_EQ(standIn({{}, folder.path()}), QString());
    EXPECT_EQ(standIn({absent, {}}), second) << "the first that is there, and no folder";
    EXPECT_EQ(standIn({absent, folder.path()}), second) << "the file is asked for all the same";
    EXPECT_EQ(standIn({{}, absent}), second);
    EXPECT_EQ(standIn({{}, {}}), second);
}

}  // namespace
