#include "app/lifecycle/command_line.h"

#include <gtest/gtest.h>

namespace {

using namespace Qt::Literals::StringLiterals;
using app::CommandLine;
using app::parsedCommandLine;

TEST(CommandLineTest, TellsSettingsFromAddresses) {
    const CommandLine line =
        parsedCommandLine({u"-Number Of Concurrent Downloads"_s, u"9"_s, u"http://a/b"_s, u"-"_s,
                           u"-Downloads Folder"_s, u"-odd"_s, u"--"_s, u"-file"_s, u"--help"_s});
    EXPECT_EQ(line.action, CommandLine::Action::Run);
    EXPECT_TRUE(line.problem.isEmpty());
    EXPECT_EQ(line.settings, (QVariantMap{{u"Number Of Concurrent Downloads"_s, u"9"_s},
                                          {u"Downloads Folder"_s, u"-odd"_s}}));
    EXPECT_EQ(line.items, (QStringList{u"http://a/b"_s, u"-"_s, u"-file"_s, u"--help"_s}));
}

TEST(CommandLineTest, RefusesWhatItDoesNotUnderstand) {
    for (const QStringList& words :
         {QStringList{u"--colour"_s}, QStringList{u"http://a/"_s, u"-Auto-Start"_s},
          QStringList{u"-o"_s, u"file"_s, u"http://a/"_s}, QStringList{u"-"_s, u"-"_s}})
        EXPECT_FALSE(parsedCommandLine(words).problem.isEmpty()) << words.join(u' ').toStdString();
}

TEST(CommandLineTest, AnswersHelpAndVersionWhateverElseIsThere) {
    EXPECT_EQ(parsedCommandLine({u"http://a/"_s, u"--help"_s, u"--nonsense"_s}).action,
              CommandLine::Action::ShowHelp);
    EXPECT_EQ(parsedCommandLine({u"--version"_s}).action, CommandLine::Action::ShowVersion);
}

}  // namespace
