#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>

namespace app {

/// What the words behind the program's name ask for.
struct CommandLine {
    enum class Action { Run, ShowHelp, ShowVersion };

    Action action = Action::Run;
    /// User defaults for this run only.
    QVariantMap settings;
    /// Addresses and paths in the order given; "-" stands for a list on standard input.
    QStringList items;
    /// Nobody asked for a window; the bus has started the program.
    bool isInBackground = false;
    /// What the running program is asked to do, by the name of a desktop entry's action
    /// (`actions`). Empty: nothing.
    QString programAction;
    /// What is wrong with the words, for people. Empty: nothing.
    QString problem;
};

/// The actions of the desktop entry, which the command line knows as options.
namespace actions {
inline const QString addFromClipboard = QStringLiteral("add-from-clipboard");
inline const QString pauseAll = QStringLiteral("pause-all");
inline const QString quit = QStringLiteral("quit");
}  // namespace actions

/// `arguments` are those behind the program's name. A word that begins with a hyphen is the key of
/// a setting and the next word its value, unless it is a single letter, which is no setting's key;
/// behind "--" everything is an address or a path. A key that this program does not know is a
/// problem.
[[nodiscard]] CommandLine parsedCommandLine(const QStringList& arguments);

}  // namespace app
