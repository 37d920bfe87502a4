#include "scripting/verbs/verb_words.h"

#include <QDir>
#include <QHash>
#include <utility>

#include "links/text/localization.h"

namespace scripting {

using namespace Qt::Literals::StringLiterals;
using links::localized;

namespace {

using Verb = VerbWords::Verb;

/// Options of `add` that take a value, and what the bus calls them.
const QHash<QString, QString>& addOptions() {
    static const QHash<QString, QString> options{
        {u"--folder"_s, u"folder"_s},     {u"--name"_s, u"name"_s},
        {u"--referrer"_s, u"referrer"_s}, {u"--user-agent"_s, u"userAgent"_s},
        {u"--cookies"_s, u"cookies"_s},   {u"--post"_s, u"postData"_s},
        {u"--checksum"_s, u"checksum"_s}};
    return options;
}

bool takesIdentities(Verb verb) {
    return verb == Verb::Pause || verb == Verb::Resume || verb == Verb::Remove;
}

/// Reads the words behind the verb one after another.
class Reader {
public:
    Reader(VerbWords& result, const QStringList& rest) : result_(result), rest_(rest) {}

    void read() {
        while (!rest_.isEmpty() && result_.problem.isEmpty()) {
            takeWord(rest_.takeFirst());
        }
        if (result_.problem.isEmpty() && !result_.wantsHelp) {
            checkNumber();
        }
    }

private:
    void takeWord(const QString& word) {
        if (word == u"--"_s) {
            result_.words += std::exchange(rest_, {});
        } else if (word == u"--help"_s || word == u"-h"_s) {
            result_.wantsHelp = true;
        } else if (word == u"--all"_s && takesIdentities(result_.verb)) {
            result_.meansAll = true;
        } else if (word == u"--json"_s && result_.verb == Verb::List) {
            result_.asJson = true;
        } else if (word == u"--paused"_s && result_.verb == Verb::Add) {
            result_.options[u"paused"_s] = true;
        } else if (result_.verb == Verb::Add && addOptions().contains(word)) {
            takeValue(word);
        } else if (word.startsWith(u'-')) {
            result_.problem = localized("unknown option: %1").arg(word);
        } else {
            result_.words.append(word);
        }
    }

    void takeValue(const QString& option) {
        if (rest_.isEmpty()) {
            result_.problem = localized("%1 needs a value").arg(option);
            return;
        }
        const QString value = rest_.takeFirst();
        result_.options[addOptions().value(option)] =
            option == u"--folder"_s ? QDir::cleanPath(QDir::current().absoluteFilePath(value))
                                    : value;
    }

    void checkNumber() {
        const bool isEmpty = result_.words.isEmpty();
        if (takesIdentities(result_.verb) && isEmpty != result_.meansAll) {
            result_.problem =
                localized("which ones? Give their identities (orlop-terminal list), or --all");
        } else if (result_.verb == Verb::Add && isEmpty) {
            result_.problem = localized("no address is given");
        } else if ((result_.verb == Verb::List || result_.verb == Verb::Wait) && !isEmpty) {
            result_.problem = localized("nothing can follow here: %1").arg(result_.words.first());
        }
    }

    VerbWords& result_;
    QStringList rest_;
};

}  // namespace

std::optional<VerbWords> parsedVerb(const QStringList& arguments) {
    static const QHash<QString, Verb> verbs{
        {u"add"_s, Verb::Add},       {u"list"_s, Verb::List},     {u"pause"_s, Verb::Pause},
        {u"resume"_s, Verb::Resume}, {u"remove"_s, Verb::Remove}, {u"wait"_s, Verb::Wait}};
    const auto verb = verbs.constFind(arguments.value(0));
    if (verb == verbs.cend()) {
        return {};
    }
    VerbWords result;
    result.verb = *verb;
    Reader(result, arguments.mid(1)).read();
    return result;
}

QString verbUsage() {
    return localized(
        "Usage: orlop-terminal add [--folder FOLDER] [--name NAME] [--paused]\n"
        "                          [--referrer TEXT] [--user-agent TEXT] [--cookies TEXT]\n"
        "                          [--post TEXT] [--checksum [ALGORITHM=]DIGITS] ADDRESS...\n"
        "       orlop-terminal list [--json]\n"
        "       orlop-terminal pause|resume|remove IDENTITY...|--all\n"
        "       orlop-terminal wait\n"
        "Asks something of the Orlop that is running, with a window or in a terminal.\n"
        "\n"
        "  add      adds addresses and prints the identity of each when it is saved\n"
        "  list     prints identity, status, progress, size and name of each download\n"
        "  resume   also tries failed ones again\n"
        "  remove   takes them out of the list; finished files stay\n"
        "  wait     ends when nothing waits or runs any more\n"
        "\n"
        "Exit status: 0 if it was done, 1 if it was refused or, of wait, a download failed,\n"
        "2 on bad usage, 3 if no Orlop is running or it ended meanwhile.\n");
}

}  // namespace scripting
