#include "scripting/service.h"

#include <unistd.h>

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>
#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/base/log.h"
#include "scripting/bus/bus_names.h"
#include "scripting/bus/reply.h"

namespace scripting {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Names of connections are never given twice, so that they pile up.
constexpr qsizetype mostSenders = 1000;
constexpr std::size_t mostWaitingCalls = 1000;

/// The interfaces of the shipped description, without the node around them.
QString description() {
    QFile file(u":/dbus/com.tarnworks.Orlop.xml"_s);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QString text = QString::fromUtf8(file.readAll());
    const QString end = u"</interface>\n"_s;
    const qsizetype from = text.indexOf(u"  <interface"_s);
    return text.mid(from, text.lastIndexOf(end) + end.size() - from);
}

QDBusMessage daemonCall(const QString& method, const QVariantList& arguments) {
    QDBusMessage message =
        QDBusMessage::createMethodCall(bus::daemon, bus::daemonPath, bus::daemon, method);
    message.setArguments(arguments);
    return message;
}

}  // namespace

Service::Service(app::DQMainController& controller, const QString& supportFolder, Launches launches)
    : controller_(controller),
      launching_(controller, std::move(launches)),
      commands_(std::make_unique<Commands>(controller, supportFolder)),
      probe_([this] { connectToBus(); }) {
    connect(&controller, &app::DQMainController::terminated, this, [this] { commands_.reset(); });
}

void Service::connectToBus() {
    bus_ = QDBusConnection::sessionBus();
    if (bus_.isConnected() && bus_.registerVirtualObject(bus::path, this)) {
        signals_ = std::make_unique<ChangeSignals>(controller_, bus_);
        requestName();
    }
}

Service::~Service() {
    if (!signals_) {
        return;
    }
    // Whoever waits for an answer that was given last gets it before the process ends.
    constexpr int patience = 500;
    bus_.call(daemonCall(u"ReleaseName"_s, {bus::service}), QDBus::Block, patience);
    bus_.unregisterObject(bus::path);
}

void Service::requestName() {
    constexpr quint32 doNotQueue = 4, isOwner = 1;
    auto* const watcher = new QDBusPendingCallWatcher(
        bus_.asyncCall(daemonCall(u"RequestName"_s, {bus::service, doNotQueue})), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher] {
        const QDBusPendingReply<quint32> reply = *watcher;
        if (reply.isError() || reply.value() != isOwner) {
            platform::log(u"scripts and browsers cannot reach this process: %1"_s.arg(
                              reply.isError() ? reply.error().message()
                                              : u"another one has the name on the bus"_s),
                          platform::LogLevel::Warning);
        }
        watcher->deleteLater();
    });
}

QString Service::introspect(const QString& path) const {
    static const QString text = description();
    return path == bus::path ? text : QString();
}

bool Service::handleMessage(const QDBusMessage& message, const QDBusConnection&) {
    const QString& interface = message.interface();
    if (message.type() != QDBusMessage::MethodCallMessage || message.path() != bus::path ||
        (!interface.isEmpty() && interface != bus::interface && interface != bus::properties &&
         interface != bus::application)) {
        return false;
    }
    const bool isCommand = interface.isEmpty() || interface == bus::interface;
    if ((isCommand && Commands::find(message.member()) == nullptr) ||
        (interface == bus::application && Launching::signatureOf(message.member()) == nullptr)) {
        return false;
    }
    message.setDelayedReply(true);
    const auto sender = senders_.constFind(message.service());
    if (sender != senders_.cend() && *sender == Sender::Ours) {
        perform(message);
        return true;
    }
    if (waiting_.size() >= mostWaitingCalls) {
        Reply(bus_, message).fail(CommandError::TooMany, u"too many wait already"_s);
        return true;
    }
    waiting_.push_back(message);
    if (sender == senders_.cend()) {
        askFor(message.service());
    }
    return true;
}

void Service::askFor(const QString& sender) {
    if (senders_.size() >= mostSenders) {
        senders_.removeIf([](const auto& entry) { return *entry == Sender::Ours; });
    }
    senders_[sender] = Sender::Asked;
    auto* const watcher = new QDBusPendingCallWatcher(
        bus_.asyncCall(daemonCall(u"GetConnectionUnixUser"_s, {sender})), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, sender] {
        const QDBusPendingReply<quint32> reply = *watcher;
        heardOf(sender, !reply.isError() && reply.value() == ::getuid());
        watcher->deleteLater();
    });
}

void Service::heardOf(const QString& sender, bool isOurs) {
    std::vector<QDBusMessage> messages;
    const auto isOfOthers = [&](const QDBusMessage& message) {
        return message.service() != sender;
    };
    const auto first = std::stable_partition(waiting_.begin(), waiting_.end(), isOfOthers);
    std::move(first, waiting_.end(), std::back_inserter(messages));
    waiting_.erase(first, waiting_.end());
    if (isOurs) {
        senders_[sender] = Sender::Ours;
    } else {
        senders_.remove(sender);
    }
    for (const QDBusMessage& message : messages) {
        if (isOurs) {
            perform(message);
        } else {
            Reply(bus_, message).fail(CommandError::NotAllowed, u"this is another user's"_s);
        }
    }
}

void Service::perform(const QDBusMessage& message) {
    if (message.interface() == bus::properties) {
        performProperties(message);
        return;
    }
    const Reply reply(bus_, message);
    const bool isLaunch = message.interface() == bus::application;
    const QString* const launch = isLaunch ? Launching::signatureOf(message.member()) : nullptr;
    const Commands::Entry* const command = isLaunch ? nullptr : Commands::find(message.member());
    Q_ASSERT(launch || command);  // Nothing else is handled.
    const QString signature = launch ? *launch : command->signature;
    if (message.signature() != signature) {
        reply.fail(CommandError::InvalidArgument,
                   u"%1 takes (%2)"_s.arg(message.member(), signature));
    } else if (!commands_) {
        reply.fail(CommandError::NotSaved, u"Orlop is ending"_s);
    } else if (isLaunch) {
        launching_.perform(message.member(), message.arguments(), reply);
    } else {
        (*commands_.*command->command)(message.arguments(), reply);
    }
}

void Service::performProperties(const QDBusMessage& message) {
    const Reply reply(bus_, message);
    const QVariantList arguments = message.arguments();
    const QString interface = arguments.value(0).toString();
    const bool isOurs = interface.isEmpty() || interface == bus::interface;
    const QString runningCount = u"RunningCount"_s;
    if (message.member() == u"Get"_s && message.signature() == u"ss"_s && isOurs &&
        arguments.at(1).toString() == runningCount) {
        reply.send({QVariant::fromValue(QDBusVariant(signals_->runningCount()))});
    } else if (message.member() == u"GetAll"_s && message.signature() == u"s"_s && isOurs) {
        reply.send({QVariantMap{{runningCount, signals_->runningCount()}}});
    } else {
        reply.fail(CommandError::InvalidArgument, u"there is no such property to be read"_s);
    }
}

}  // namespace scripting
