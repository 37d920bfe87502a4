#include "app/lifecycle/command_line.h"

#include "links/text/localization.h"
#include "platform/base/arguments.h"
#include "platform/base/setting.h"

namespace app {
namespace {

using namespace Qt::Literals::StringLiterals;
using links::localized;

/// Given by a session manager that starts the program again (XSMP); its value is of no use here.
const QString sessionOption = u"session"_s;

bool isAction(const QString& option) {
    return option == actions::addFromClipboard || option == actions::pauseAll ||
           option == actions::quit;
}

void takeOption(const QString& word, CommandLine& line) {
    if (word == u"--help"_s || word == u"-h"_s)
        line.action = CommandLine::Action::ShowHelp;
    else if (word == u"--version"_s)
        line.action = CommandLine::Action::ShowVersion;
    else if (word == u"--background"_s)
        line.isInBackground = true;
    else if (word.startsWith(u"--"_s) && isAction(word.sliced(2)))
        line.programAction = word.sliced(2);
    else if (word.startsWith(u"--"_s) || word.size() == 2)
        line.problem = localized("unknown option: %1").arg(word);
    else
        line.problem = localized("the setting %1 needs a value").arg(word);
}

/// What a misspelt setting would do is to be without effect in silence.
void checkSetting(const QString& key, CommandLine& line) {
    const platform::SettingEntry* nearest = platform::nearestSetting(key);
    if (key == sessionOption || nearest == nullptr || nearest->name() == key)
        return;
    line.problem =
        localized("there is no setting \"%1\"; did you mean \"%2\"?").arg(key, nearest->name());
}

/// A word that is no setting: an option, an address or a path.
void takeWord(const QString& word, CommandLine& line) {
    if (!word.startsWith(u'-') || word == u"-"_s)
        line.items.append(word);
    else
        takeOption(word, line);
}

}  // namespace

CommandLine parsedCommandLine(const QStringList& arguments) {
    const platform::ParsedArguments parsed = platform::parseArguments(arguments);
    CommandLine line;
    line.settings = parsed.defaults;
    for (auto setting = parsed.defaults.cbegin(); setting != parsed.defaults.cend(); ++setting) {
        // No setting is called so; it is an option of some other program.
        if (setting.key().size() == 1)
            takeOption(u'-' + setting.key(), line);
        else
            checkSetting(setting.key(), line);
    }
    line.settings.remove(sessionOption);
    for (const QString& word : parsed.rest.first(parsed.verbatimStart))
        takeWord(word, line);
    line.items += parsed.rest.sliced(parsed.verbatimStart);
    if (line.items.count(u"-"_s) > 1)
        line.problem = localized("standard input can be read only once");
    return line;
}

}  // namespace app
