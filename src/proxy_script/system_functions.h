#pragma once

#include <QObject>
#include <QString>
#include <functional>

#include "proxy_script/name_lookup.h"

namespace proxy_script {

/// What the helper functions cannot do by themselves. Scripts see none of it directly.
class SystemFunctions : public QObject {
    Q_OBJECT

public:
    SystemFunctions(NameLookup& names, std::function<void(const QString&)> alert)
        : _names(names), _alert(std::move(alert)) {}

    Q_INVOKABLE QString addressOfHost(const QString& host) {
        return QString::fromStdString(_names.addressOfHost(host.toStdString()));
    }
    Q_INVOKABLE QString addressesOfHost(const QString& host) {
        return QString::fromStdString(_names.addressesOfHost(host.toStdString()));
    }
    Q_INVOKABLE QString ownAddresses() { return QString::fromStdString(_names.ownAddresses()); }
    Q_INVOKABLE QString ownAddress() { return QString::fromStdString(_names.ownAddress()); }
    Q_INVOKABLE void alert(const QString& message) { _alert(message); }

private:
    NameLookup& _names;
    std::function<void(const QString&)> _alert;
};

}  // namespace proxy_script
