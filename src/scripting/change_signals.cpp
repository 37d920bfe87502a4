#include "scripting/change_signals.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <utility>

#include "scripting/bus/bus_names.h"
#include "scripting/download_facts.h"

namespace scripting {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr platform::Seconds interval = 0.1;

QVariant asArray(const QList<QVariantMap>& maps) {
    QDBusArgument array;
    array.beginArray(QMetaType(QMetaType::QVariantMap));
    for (const QVariantMap& map : maps) {
        array << map;
    }
    array.endArray();
    return QVariant::fromValue(array);
}

}  // namespace

ChangeSignals::ChangeSignals(app::DQMainController& controller, const QDBusConnection& bus)
    : controller_(controller), bus_(bus), telling_(controller.surroundings().loop) {
    using Controller = app::DQMainController;
    // What is there already was not added now.
    for (const engine::DownloadPtr& download : controller_.downloads()) {
        told_.insert(identityOf(*download), factsOf(controller_, *download));
    }
    QObject::connect(&controller_, &Controller::queueChanged, &listener_, [this] {
        hasQueueChanged_ = true;
        tellSoon();
    });
    QObject::connect(&controller_, &Controller::downloadChanged, &listener_,
                     [this](const engine::DownloadPtr& download) {
                         changed_.push_back(download);
                         tellSoon();
                     });
    QObject::connect(&controller_, &Controller::statusChanged, &listener_, [this] { tellSoon(); });
    QObject::connect(&controller_, &Controller::downloadEnded, &listener_,
                     [this](const engine::DownloadPtr& download) {
                         const QVariantMap facts = factsOf(controller_, *download);
                         if (const QString identity = identityOf(*download);
                             !told_.contains(identity)) {
                             told_.insert(identity, facts);
                             send(u"Added"_s, asArray({facts}));
                         }
                         send(u"Ended"_s, facts);
                     });
}

quint32 ChangeSignals::runningCount() const {
    return static_cast<quint32>(controller_.tally().count(engine::DQDownloadStatusDownloading));
}

void ChangeSignals::tellSoon() {
    telling_.startUnlessActive(interval, [this] { tell(); });
}

void ChangeSignals::tell() {
    if (std::exchange(hasQueueChanged_, false)) {
        tellMembership();
    }
    tellChanges();
    tellRunningCount();
}

void ChangeSignals::tellMembership() {
    QList<QVariantMap> added;
    QSet<QString> present;
    for (const engine::DownloadPtr& download : app::Downloads(controller_.downloads())) {
        const QString identity = identityOf(*download);
        present.insert(identity);
        if (!told_.contains(identity)) {
            added.append(factsOf(controller_, *download));
            told_.insert(identity, added.last());
        }
    }
    QStringList removed;
    for (auto entry = told_.cbegin(); entry != told_.cend(); ++entry) {
        if (!present.contains(entry.key())) {
            removed.append(entry.key());
        }
    }
    for (const QString& identity : removed) {
        told_.remove(identity);
    }
    if (!added.isEmpty()) {
        send(u"Added"_s, asArray(added));
    }
    if (!removed.isEmpty()) {
        send(u"Removed"_s, removed);
    }
}

void ChangeSignals::tellChanges() {
    QList<QVariantMap> changes;
    QSet<const engine::DQDownload*> seen;
    for (const auto& weak : std::exchange(changed_, {})) {
        const engine::DownloadPtr download = weak.lock();
        if (!download || seen.contains(download.get()) ||
            !controller_.queue().contains(*download)) {
            continue;
        }
        seen.insert(download.get());
        const QVariantMap facts = factsOf(controller_, *download);
        const QString identity = identityOf(*download);
        QVariantMap changed = differences(std::exchange(told_[identity], facts), facts);
        if (!changed.isEmpty()) {
            changed[u"identity"_s] = identity;
            changes.append(changed);
        }
    }
    if (!changes.isEmpty()) {
        send(u"Changed"_s, asArray(changes));
    }
}

void ChangeSignals::tellRunningCount() {
    const quint32 count = runningCount();
    if (std::exchange(toldCount_, count) == count) {
        return;
    }
    QDBusMessage message =
        QDBusMessage::createSignal(bus::path, bus::properties, u"PropertiesChanged"_s);
    message << bus::interface << QVariantMap{{u"RunningCount"_s, count}} << QStringList();
    bus_.send(message);
}

void ChangeSignals::send(const QString& signal, const QVariant& argument) {
    QDBusMessage message = QDBusMessage::createSignal(bus::path, bus::interface, signal);
    message << argument;
    bus_.send(message);
}

}  // namespace scripting
