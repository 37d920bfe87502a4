#include "app/terminal/command_line.h"

#include <QCoreApplication>

namespace app::terminal {
namespace {

using namespace Qt::Literals::StringLiterals;

QString tr(const char* text) {
    return QCoreApplication::translate("Orlop", text);
}

/// Reads one word, and the next if it belongs to it. Answers how many were read; 0: see the
/// problem.
qsizetype readWord(const QStringList& arguments, qsizetype index, CommandLine& line) {
    const QString& word = arguments[index];
    if (!word.startsWith(u'-') || word == u"-"_s) {
        line.items.append(word);
        return 1;
    }
    if (word == u"--help"_s || word == u"--version"_s) {
        line.action =
            word == u"--help"_s ? CommandLine::Action::ShowHelp : CommandLine::Action::ShowVersion;
        return 1;
    }
    if (word.startsWith(u"--"_s)) {
        line.problem = tr("unknown option: %1").arg(word);
        return 0;
    }
    if (index + 1 == arguments.size()) {
        line.problem = tr("the setting %1 needs a value").arg(word);
        return 0;
    }
    line.settings.insert(word.mid(1), arguments[index + 1]);
    return 2;
}

}  // namespace

CommandLine parsedCommandLine(const QStringList& arguments) {
    CommandLine line;
    for (qsizetype i = 0; i < arguments.size() && line.action == CommandLine::Action::Run;) {
        if (arguments[i] == u"--"_s) {
            line.items.append(arguments.mid(i + 1));
            break;
        }
        const qsizetype read = readWord(arguments, i, line);
        if (read == 0)
            break;
        i += read;
    }
    if (line.items.count(u"-"_s) > 1)
        line.problem = tr("standard input can be read only once");
    return line;
}

QString usageText() {
    return tr(
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
