#include "scripting/verbs/verbs.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <limits>

#include "app/terminal/cells.h"
#include "links/format/byte_counts.h"
#include "links/text/localization.h"
#include "scripting/bus/bus_names.h"
#include "scripting/bus/bus_probe.h"

namespace scripting {

using namespace Qt::Literals::StringLiterals;
using links::localized;

namespace {

constexpr int statusDone = 0, statusRefused = 1, statusBadUsage = 2, statusNotRunning = 3;
constexpr int timeout = 30'000;
constexpr int forEver = std::numeric_limits<int>::max();

using Verb = VerbWords::Verb;

/// One verb from its words to its exit status.
class Performance {
public:
    Performance(const VerbWords& words, app::terminal::Output& output,
                app::terminal::Output& errors, app::terminal::Glyphs glyphs)
        : words_(words), output_(output), errors_(errors), glyphs_(glyphs) {}

    [[nodiscard]] int status() {
        if (words_.wantsHelp) {
            output_.write(verbUsage().toUtf8());
            return statusDone;
        }
        if (!words_.problem.isEmpty()) {
            tellProblem(words_.problem);
            return statusBadUsage;
        }
        if (!bus::isThere()) {
            tellProblem(localized("there is no session bus, over which a running Orlop is asked"));
            return statusNotRunning;
        }
        if (!BusProbe::waitUntilItSpeaks() || !QDBusConnection::sessionBus().isConnected()) {
            tellProblem(localized("the session bus does not answer"));
            return statusNotRunning;
        }
        perform();
        return status_;
    }

private:
    void perform() {
        switch (words_.verb) {
            case Verb::Add:
                add();
                return;
            case Verb::List:
                list();
                return;
            case Verb::Pause:
                call(u"Pause"_s, {identities()});
                return;
            case Verb::Resume:
                call(u"Resume"_s, {identities()});
                return;
            case Verb::Remove:
                call(u"Remove"_s, {identities()});
                return;
            case Verb::Wait:
                wait();
                return;
        }
    }

    void add() {
        for (const QString& address : words_.words) {
            const auto answer = call(u"Add"_s, {address, words_.options}, address);
            if (status_ == statusNotRunning) {
                return;
            }
            if (answer) {
                writeLine(answer->value(0).toString() + u"  "_s + address);
            }
        }
    }

    void list() {
        const QList<QVariantMap> downloads = listed();
        if (status_ != statusDone) {
            return;
        }
        if (words_.asJson) {
            QJsonArray array;
            for (const QVariantMap& download : downloads) {
                array.append(QJsonObject::fromVariantMap(download));
            }
            output_.write(QJsonDocument(array).toJson());
            return;
        }
        for (const QVariantMap& download : downloads) {
            writeLine(lineFor(download));
        }
    }

    void wait() {
        const auto answer = call(u"WaitUntilDone"_s, {}, {}, forEver);
        const uint failed = answer ? answer->value(0).toUInt() : 0;
        if (failed > 0) {
            tellProblem(localized("%1 failed").arg(failed));
            status_ = statusRefused;
        }
    }

    [[nodiscard]] static QString lineFor(const QVariantMap& download) {
        const auto size = download.value(u"size"_s).toULongLong();
        const auto percent = static_cast<int>(download.value(u"fraction"_s).toDouble() * 100);
        return u"%1  %2  %3  %4  %5"_s.arg(
            download.value(u"identity"_s).toString(),
            download.value(u"status"_s).toString().leftJustified(11),
            u"%1 %"_s.arg(percent).rightJustified(5),
            (size > 0 ? links::fileSizeDescriptionWithBytesCount(size) : u"?"_s).rightJustified(9),
            download.value(u"name"_s).toString());
    }

    /// What the verb is about; with --all, those that it can do something to.
    [[nodiscard]] QStringList identities() {
        if (!words_.meansAll) {
            return words_.words;
        }
        QStringList all;
        for (const QVariantMap& download : listed()) {
            all.append(download.value(u"identity"_s).toString());
        }
        return all;
    }

    [[nodiscard]] QList<QVariantMap> listed() {
        const auto answer = call(u"List"_s, {});
        return answer ? qdbus_cast<QList<QVariantMap>>(answer->value(0)) : QList<QVariantMap>();
    }

    /// Nothing: it could not be done, which is told.
    std::optional<QVariantList> call(const QString& method, const QVariantList& arguments,
                                     const QString& about = {}, int patience = timeout) {
        const bool isAboutNone = !arguments.isEmpty() && method != u"Add"_s &&
                                 arguments.first().toStringList().isEmpty();
        if (status_ == statusNotRunning || isAboutNone) {
            return {};
        }
        QDBusMessage message =
            QDBusMessage::createMethodCall(bus::service, bus::path, bus::interface, method);
        message.setArguments(arguments);
        message.setAutoStartService(false);
        const QDBusMessage reply =
            QDBusConnection::sessionBus().call(message, QDBus::Block, patience);
        if (reply.type() == QDBusMessage::ReplyMessage) {
            return reply.arguments();
        }
        tellError(reply, about);
        return {};
    }

    void tellError(const QDBusMessage& reply, const QString& about) {
        const QString& name = reply.errorName();
        if (name.startsWith(bus::errors)) {
            status_ = statusRefused;
            tellProblem(about.isEmpty() ? reply.errorMessage()
                                        : about + u": "_s + reply.errorMessage());
            return;
        }
        status_ = statusNotRunning;
        const bool isRunning =
            !name.endsWith(u".ServiceUnknown"_s) && !name.endsWith(u".NameHasNoOwner"_s);
        tellProblem(isRunning ? localized("Orlop has ended or does not answer")
                              : localized("Orlop is not running. Start it, or give what is to be "
                                          "downloaded to orlop-terminal itself"));
    }

    void tellProblem(const QString& text) {
        errors_.write(
            u"orlop-terminal: %1\n"_s.arg(app::terminal::printable(text, glyphs_)).toUtf8());
    }
    void writeLine(const QString& text) {
        output_.write((app::terminal::printable(text, glyphs_) + u'\n').toUtf8());
    }

    const VerbWords& words_;
    app::terminal::Output& output_;
    app::terminal::Output& errors_;
    const app::terminal::Glyphs glyphs_;
    int status_ = statusDone;
};

}  // namespace

int performVerb(const VerbWords& words, app::terminal::Output& output,
                app::terminal::Output& errors, app::terminal::Glyphs glyphs) {
    return Performance(words, output, errors, glyphs).status();
}

}  // namespace scripting
