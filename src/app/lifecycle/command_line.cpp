#include "app/terminal/command_line.h"

#include "links/text/localization.h"
#include "platform/base/arguments.h"

namespace app::terminal {
namespace {

using namespace Qt::Literals::StringLiterals;
using links::localized;

/// A word that is no setting: an option, an address or a path.
void takeWord(const QString& word, CommandLine& line) {
    if (!word.startsWith(u'-') || word == u"-"_s)
        line.items.append(word);
    else if (word == u"--help"_s || word == u"-h"_s)
        line.action = CommandLine::Action::ShowHelp;
    else if (word == u"--version"_s)
        line.action = CommandLine::Action::ShowVersion;
    else if (word.startsWith(u"--"_s))
        line.problem = localized("unknown option: %1").arg(word);
    else
        line.problem = localized("the setting %1 needs a value").arg(word);
}

}  // namespace

CommandLine parsedCommandLine(const QStringList& arguments) {
    const platform::ParsedArguments parsed = platform::parseArguments(arguments);
    CommandLine line;
    line.settings = parsed.defaults;
    for (const QString& word : parsed.rest.first(parsed.verbatimStart))
        takeWord(word, line);
    line.items += parsed.rest.sliced(parsed.verbatimStart);
    if (line.items.count(u"-"_s) > 1)
        line.problem = localized("standard input can be read only once");
    return line;
}

QString usageText() {
    return localized(
        "Usage: orlop-terminal [-KEY VALUE]... [ADDRESS|FILE]...\n"
        "Downloads addresses, lists of addresses (.txt) and begun downloads (.orlop) into\n"
        "the downloads folder, together with what an earlier run left in the queue, and\n"
        "ends when all is done.\n"
        "\n"
        "  -KEY VALUE   a setting for this run only, such as -\"Downloads Folder\" /tmp\n"
        "  -            read addresses from standard input, one a line\n"
        "  --           only addresses and files follow\n"
        "  --help       show this text\n"
        "  --version    show the version\n"
        "\n"
        "Control-C pauses all downloads and saves the queue; the next run goes on. Pressed\n"
        "twice, it ends at once.\n"
        "\n"
        "Exit status: 0 if every download completed, 1 if one failed, 2 on bad usage.\n");
}

}  // namespace app::terminal
