#include "scripting/launching.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QHash>
#include <QUrl>
#include <algorithm>
#include <iterator>
#include <utility>

#include "app/commands/bulk_commands.h"
#include "app/lifecycle/command_line.h"
#include "app/main_controller.h"
#include "scripting/bus/bus_names.h"
#include "scripting/bus/bus_probe.h"
#include "scripting/requests.h"

namespace scripting {

using namespace Qt::Literals::StringLiterals;

namespace {

const QString activateActionMethod = u"ActivateAction"_s;
const QString tokenKey = u"activation-token"_s;

QString tokenIn(const QVariant& platformData) {
    return qdbus_cast<QVariantMap>(platformData).value(tokenKey).toString();
}

/// Launchers give files as addresses.
QString pathOrAddress(const QString& uri) {
    const QUrl url(uri);
    return url.isLocalFile() ? url.toLocalFile() : uri;
}

}  // namespace

Launching::Launching(app::DQMainController& controller, Launches launches)
    : controller_(controller), launches_(std::move(launches)) {}

const QString* Launching::signatureOf(const QString& method) {
    static const QHash<QString, QString> signatures{{u"Activate"_s, u"a{sv}"_s},
                                                    {u"Open"_s, u"asa{sv}"_s},
                                                    {activateActionMethod, u"sava{sv}"_s}};
    const auto found = signatures.constFind(method);
    return found == signatures.cend() ? nullptr : &*found;
}

void Launching::perform(const QString& method, const QVariantList& arguments,
                        const Reply& reply) const {
    if (method == activateActionMethod) {
        activateAction(arguments.at(0).toString(), arguments.at(2), reply);
    } else if (arguments.size() == 1) {
        open({}, arguments.at(0), reply);
    } else {
        open(arguments.at(0).toStringList(), arguments.at(1), reply);
    }
}

void Launching::open(const QStringList& addresses, const QVariant& platformData,
                     const Reply& reply) const {
    if (addresses.size() > mostAddresses) {
        reply.fail(CommandError::TooMany, u"these are too many at once"_s);
        return;
    }
    QStringList items;
    std::transform(addresses.begin(), addresses.end(), std::back_inserter(items), pathOrAddress);
    launches_.open(items, tokenIn(platformData), [reply](bool isSaved) {
        if (isSaved) {
            reply.send();
        } else {
            reply.fail(CommandError::NotSaved, u"it was added, but cannot be saved"_s);
        }
    });
}

void Launching::activateAction(const QString& action, const QVariant& platformData,
                               const Reply& reply) const {
    if (action == app::actions::addFromClipboard && launches_.addFromClipboard) {
        launches_.open({}, tokenIn(platformData), [](bool) {});
        launches_.addFromClipboard();
    } else if (action == app::actions::pauseAll) {
        app::pauseDownloads(controller_.queue(),
                            engine::downloadsFromCollectionMatchingStatusMask(
                                controller_.downloads(), engine::activeStatuses));
    } else if (action == app::actions::quit) {
        controller_.terminate();
    } else {
        reply.fail(CommandError::InvalidArgument, u"there is no action %1 here"_s.arg(action));
        return;
    }
    reply.send();
}

bool didAskRunningProgram(const QString& action, const QString& token) {
    constexpr int patience = 10'000;
    if (!BusProbe::waitUntilItSpeaks()) {
        return false;
    }
    QDBusMessage message = QDBusMessage::createMethodCall(bus::service, bus::path, bus::application,
                                                          activateActionMethod);
    const QVariantMap platformData =
        token.isEmpty() ? QVariantMap() : QVariantMap{{tokenKey, token}};
    QDBusArgument parameters;
    parameters.beginArray(QMetaType::fromType<QDBusVariant>());
    parameters.endArray();
    message.setArguments({action, QVariant::fromValue(parameters), platformData});
    message.setAutoStartService(false);
    const QDBusMessage reply = QDBusConnection::sessionBus().call(message, QDBus::Block, patience);
    return reply.type() == QDBusMessage::ReplyMessage;
}

}  // namespace scripting
