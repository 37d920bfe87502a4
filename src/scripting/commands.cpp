#include "scripting/commands.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <algorithm>
#include <utility>

#include "app/commands/bulk_commands.h"
#include "app/settings.h"
#include "engine/record/user_settings.h"
#include "links/text/localization.h"
#include "platform/base/user_defaults.h"
#include "platform/files/files.h"
#include "scripting/bus/text_pair.h"
#include "scripting/download_facts.h"
#include "scripting/requests.h"

namespace scripting {

namespace keys = engine::keys;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::size_t mostWaiters = 100;

QVariantMap dictionary(const QVariant& argument) {
    return qdbus_cast<QVariantMap>(argument);
}

template <typename Value>
void refuse(const Parsed<Value>& parsed, const Reply& reply) {
    reply.fail(
        parsed.isAddressAtFault ? CommandError::InvalidAddress : CommandError::InvalidArgument,
        parsed.problem);
}

QString wordFor(HandOvers::Outcome::Kind kind) {
    switch (kind) {
        case HandOvers::Outcome::Kind::Saved:
            return u"saved"_s;
        case HandOvers::Outcome::Kind::Known:
            return u"known"_s;
        case HandOvers::Outcome::Kind::Refused:
            break;
    }
    return u"refused"_s;
}

/// True: it was an error, which is answered.
bool failed(const HandOvers::Answer& answer, const Reply& reply) {
    using Error = HandOvers::Answer::Error;
    if (answer.error == Error::TooLate) {
        reply.fail(CommandError::TooLate, u"it could not be saved in time, and nothing was made"_s);
    } else if (answer.error == Error::NotSaved) {
        reply.fail(CommandError::NotSaved, u"it cannot be saved, and nothing was made"_s);
    }
    return answer.error != Error::None;
}

}  // namespace

Commands::Commands(app::DQMainController& controller, const QString& supportFolder)
    : controller_(controller),
      handOvers_(controller, supportFolder + u"/Hand-Overs.plist"_s),
      look_(controller.surroundings().loop) {
    qDBusRegisterMetaType<TextPair>();
    QObject::connect(&controller_, &app::DQMainController::statusChanged, &listener_, [this] {
        if (!waiting_.empty()) {
            look_.startUnlessActive(0, [this] { answerWaiting(); });
        }
    });
}

const Commands::Entry* Commands::find(const QString& name) {
    static const QHash<QString, Entry> commands{
        {u"Download"_s, {&Commands::download, u"asa{sv}"_s}},
        {u"NumberOfDownloads"_s, {&Commands::numberOfDownloads, u""_s}},
        {u"NumberOfFailedDownloads"_s, {&Commands::numberOfFailedDownloads, u""_s}},
        {u"PauseAll"_s, {&Commands::pauseAll, u""_s}},
        {u"QueuePaused"_s, {&Commands::queuePaused, u""_s}},
        {u"CancelAll"_s, {&Commands::cancelAll, u""_s}},
        {u"List"_s, {&Commands::list, u""_s}},
        {u"Add"_s, {&Commands::add, u"sa{sv}"_s}},
        {u"Pause"_s, {&Commands::pause, u"as"_s}},
        {u"Resume"_s, {&Commands::resume, u"as"_s}},
        {u"Remove"_s, {&Commands::remove, u"as"_s}},
        {u"Move"_s, {&Commands::move, u"asu"_s}},
        {u"WaitUntilDone"_s, {&Commands::waitUntilDone, u""_s}},
        {u"HandOver"_s, {&Commands::handOver, u"a{sv}"_s}},
        {u"HandOverAll"_s, {&Commands::handOverAll, u"aa{sv}"_s}},
        {u"Withdraw"_s, {&Commands::withdraw, u"s"_s}},
        {u"BrowserFilter"_s, {&Commands::browserFilter, u""_s}},
        {u"Show"_s, {&Commands::show, u""_s}}};
    const auto found = commands.constFind(name);
    return found == commands.cend() ? nullptr : &*found;
}

void Commands::download(const QVariantList& arguments, const Reply& reply) {
    const auto urls = parsedAddresses(arguments.at(0).toStringList());
    const auto script = parsedArguments(dictionary(arguments.at(1)));
    if (!urls.value) {
        refuse(urls, reply);
    } else if (!script.value) {
        refuse(script, reply);
    } else {
        if (!urls.value->empty()) {
            controller_.openURLsAfterDelay(*urls.value, *script.value, true);
        }
        reply.send();
    }
}

void Commands::numberOfDownloads(const QVariantList&, const Reply& reply) {
    reply.send({static_cast<quint32>(controller_.numberOfDownloads())});
}

void Commands::numberOfFailedDownloads(const QVariantList&, const Reply& reply) {
    reply.send({static_cast<quint32>(controller_.numberOfFailedDownloads())});
}

void Commands::pauseAll(const QVariantList&, const Reply& reply) {
    app::pauseDownloads(controller_.queue(), controller_.contextDownloads());
    reply.send();
}

void Commands::queuePaused(const QVariantList&, const Reply& reply) {
    app::queuePaused(controller_.queue(), controller_.contextDownloads());
    reply.send();
}

void Commands::cancelAll(const QVariantList&, const Reply& reply) {
    app::remove(controller_.queue(), controller_.contextDownloads());
    reply.send();
}

void Commands::list(const QVariantList&, const Reply& reply) {
    QDBusArgument downloads;
    downloads.beginArray(QMetaType(QMetaType::QVariantMap));
    for (const engine::DownloadPtr& download : app::Downloads(controller_.downloads())) {
        if (!download->isBeingRemoved()) {
            downloads << factsOf(controller_, *download);
        }
    }
    downloads.endArray();
    reply.send({QVariant::fromValue(downloads)});
}

void Commands::add(const QVariantList& arguments, const Reply& reply) {
    const auto request = parsedAddRequest(arguments.at(0).toString(), dictionary(arguments.at(1)));
    if (!request.value) {
        refuse(request, reply);
        return;
    }
    const AddRequest& add = *request.value;
    const bool wasEmpty = controller_.downloads().empty();
    const bool starts =
        !add.isPaused && controller_.surroundings().defaults.get(app::settings::autoStart);
    const engine::DownloadPtr download =
        controller_.queue().add(add.url, starts, [&](engine::DQDownload& record) {
            if (!add.folder.isEmpty()) {
                record.userSettings().set(keys::downloadFolder,
                                          platform::abbreviateWithTilde(add.folder));
            }
            if (!add.name.isEmpty()) {
                record.setName(add.name);
                record.userSettings().set(keys::keepsName, true);
            }
            if (!add.checksum.isEmpty()) {
                record.userSettings().set(keys::checksum, add.checksum);
            }
            if (!add.request.isEmpty()) {
                record.userSettings().set(keys::request, add.request);
            }
        });
    if (!download) {
        reply.fail(CommandError::InvalidAddress, u"it cannot be downloaded"_s);
        return;
    }
    controller_.whenSaved([reply, identity = identityOf(*download)](bool isOnDisk) {
        if (isOnDisk) {
            reply.send({identity});
        } else {
            reply.fail(CommandError::NotSaved, u"it was added, but cannot be saved"_s);
        }
    });
    controller_.didAdd({download}, wasEmpty);
}

std::optional<app::Downloads> Commands::downloadsNamed(const QVariant& identities,
                                                       const Reply& reply) const {
    const QStringList names = identities.toStringList();
    if (!areIdentities(names)) {
        reply.fail(CommandError::InvalidArgument, u"these are no identities, or too many"_s);
        return {};
    }
    QHash<QString, engine::DownloadPtr> known;
    for (const engine::DownloadPtr& download : controller_.downloads()) {
        if (!download->isBeingRemoved()) {
            known.insert(identityOf(*download), download);
        }
    }
    app::Downloads named;
    for (const QString& name : names) {
        const engine::DownloadPtr download = known.take(name);
        if (download) {
            named.push_back(download);
        } else if (names.count(name) == 1) {
            reply.fail(CommandError::UnknownDownload, u"there is no download %1"_s.arg(name));
            return {};
        }
    }
    return named;
}

void Commands::pause(const QVariantList& arguments, const Reply& reply) {
    if (const auto downloads = downloadsNamed(arguments.at(0), reply)) {
        app::pauseDownloads(controller_.queue(), *downloads);
        reply.send();
    }
}

void Commands::resume(const QVariantList& arguments, const Reply& reply) {
    const auto downloads = downloadsNamed(arguments.at(0), reply);
    if (!downloads) {
        return;
    }
    const app::Downloads failed = engine::downloadsFromCollectionMatchingStatusMask(
        *downloads, engine::DQDownloadStatusAborted);
    app::queuePaused(controller_.queue(), engine::downloadsFromCollectionMatchingStatusMask(
                                              *downloads, engine::DQDownloadStatusPaused));
    for (const engine::DownloadPtr& download : failed) {
        static_cast<void>(controller_.queue().retry(*download, true));
    }
    if (!failed.empty()) {
        controller_.updateDownloadListAndStatus();
        controller_.writeArchiveBeforeQuitting(false);
    }
    reply.send();
}

void Commands::remove(const QVariantList& arguments, const Reply& reply) {
    if (const auto downloads = downloadsNamed(arguments.at(0), reply)) {
        app::remove(controller_.queue(), *downloads);
        reply.send();
    }
}

void Commands::move(const QVariantList& arguments, const Reply& reply) {
    auto downloads = downloadsNamed(arguments.at(0), reply);
    if (!downloads) {
        return;
    }
    engine::DownloadQueue& queue = controller_.queue();
    std::sort(downloads->begin(), downloads->end(), [&](const auto& one, const auto& other) {
        return queue.indexOf(*one) < queue.indexOf(*other);
    });
    if (queue.move(*downloads, static_cast<qsizetype>(arguments.at(1).toUInt()), false)) {
        controller_.updateDownloadListAndStatus();
        controller_.writeArchiveBeforeQuitting(false);
    }
    reply.send();
}

void Commands::waitUntilDone(const QVariantList&, const Reply& reply) {
    if (waiting_.size() >= mostWaiters) {
        reply.fail(CommandError::TooMany, u"too many wait already"_s);
        return;
    }
    // What has just been asked for by another command is on its way.
    controller_.whenTakenIn([this, reply, alive = std::weak_ptr(alive_)] {
        if (!alive.expired()) {
            waiting_.push_back(reply);
            answerWaiting();
        }
    });
}

void Commands::answerWaiting() {
    if (controller_.anyDownloadMatchesStatusMask(engine::activeStatuses)) {
        return;
    }
    const auto& downloads = controller_.downloads();
    const auto failed = std::count_if(downloads.begin(), downloads.end(), [](const auto& download) {
        return download->status() == engine::DQDownloadStatusAborted ||
               (download->status() == engine::DQDownloadStatusPaused && download->isInterrupted());
    });
    for (const Reply& reply : std::exchange(waiting_, {})) {
        reply.send({static_cast<quint32>(failed)});
    }
}

void Commands::handOver(const QVariantList& arguments, const Reply& reply) {
    handOvers_.handOver({parsedHandOver(dictionary(arguments.at(0)))},
                        [reply](const HandOvers::Answer& answer) {
                            if (!failed(answer, reply)) {
                                const HandOvers::Outcome& outcome = answer.outcomes.front();
                                reply.send({wordFor(outcome.kind), outcome.text});
                            }
                        });
}

void Commands::handOverAll(const QVariantList& arguments, const Reply& reply) {
    const auto dictionaries = qdbus_cast<QList<QVariantMap>>(arguments.at(0));
    if (dictionaries.size() > mostHandOvers) {
        reply.fail(CommandError::TooMany, u"these are too many at once"_s);
        return;
    }
    std::vector<Parsed<HandOverRequest>> requests;
    requests.reserve(static_cast<std::size_t>(dictionaries.size()));
    for (const QVariantMap& request : dictionaries) {
        requests.push_back(parsedHandOver(request));
    }
    handOvers_.handOver(requests, [reply](const HandOvers::Answer& answer) {
        if (failed(answer, reply)) {
            return;
        }
        QDBusArgument outcomes;
        outcomes.beginArray(QMetaType::fromType<TextPair>());
        for (const HandOvers::Outcome& outcome : answer.outcomes) {
            outcomes << TextPair{wordFor(outcome.kind), outcome.text};
        }
        outcomes.endArray();
        reply.send({QVariant::fromValue(outcomes)});
    });
}

void Commands::withdraw(const QVariantList& arguments, const Reply& reply) {
    const QString id = arguments.at(0).toString();
    if (!isHandOverId(id)) {
        reply.fail(CommandError::InvalidArgument, u"this is no id"_s);
        return;
    }
    handOvers_.withdraw(id, [reply](std::optional<bool> isWithdrawn) {
        if (isWithdrawn) {
            reply.send({*isWithdrawn});
        } else {
            reply.fail(CommandError::NotSaved, u"it is gone, but that cannot be saved"_s);
        }
    });
}

void Commands::browserFilter(const QVariantList&, const Reply& reply) {
    const platform::UserDefaults& suite =
        controller_.surroundings().defaults.suite(app::settings::sharedDomain);
    const QString filter = suite.get(app::settings::safariExtensionFilter);
    // A JSON text by itself, taken out of the array that the writer wants around it.
    const QByteArray json = QJsonDocument(QJsonArray{filter}).toJson(QJsonDocument::Compact);
    reply.send({QString::fromUtf8(json.sliced(1, json.size() - 2))});
}

void Commands::show(const QVariantList&, const Reply& reply) {
    controller_.surroundings().frontEnd.presence.showDownloadWindow(true);
    reply.send();
}

}  // namespace scripting
