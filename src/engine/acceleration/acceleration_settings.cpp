#include "engine/acceleration/acceleration_settings.h"

#include "engine/settings.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

platform::UserDefaults& defaults() {
    return platform::standardDefaults();
}

QString listedName(const QString& host) {
    return host.isEmpty() ? u"?"_s : host;
}

void storeHosts(const platform::Setting<QStringList>& setting, const QStringList& hosts) {
    if (hosts.isEmpty())
        defaults().removeObject(setting.name());
    else
        defaults().setObject(setting.name(), hosts);
}

}  // namespace

bool AccelerationSettings::accelerates() {
    return defaults().get(settings::accelerationEnabled);
}

void AccelerationSettings::setAccelerates(bool accelerates) {
    defaults().set(settings::accelerationEnabled, accelerates);
}

qint64 AccelerationSettings::accelerationFactor() {
    return defaults().get(settings::accelerationChannels);
}

void AccelerationSettings::setAccelerationFactor(qint64 factor) {
    defaults().set(settings::accelerationChannels, factor);
}

qint64 AccelerationSettings::acceleratorFractionMinimumSize() {
    return defaults().get(settings::accelerationMinimumFractionSize);
}

QStringList AccelerationSettings::accelerationHostWhitelist() {
    return defaults().stringArrayForKey(settings::accelerationHostWhitelist.name());
}

void AccelerationSettings::setAccelerationHostWhitelist(const QStringList& hosts) {
    storeHosts(settings::accelerationHostWhitelist, hosts);
}

QStringList AccelerationSettings::accelerationHostBlacklist() {
    return defaults().stringArrayForKey(settings::accelerationHostBlacklist.name());
}

void AccelerationSettings::setAccelerationHostBlacklist(const QStringList& hosts) {
    storeHosts(settings::accelerationHostBlacklist, hosts);
}

bool AccelerationSettings::acceleratesHost(const QString& queueRelevantHost) {
    const QString host = listedName(queueRelevantHost);
    return accelerates() ? !accelerationHostBlacklist().contains(host)
                         : accelerationHostWhitelist().contains(host);
}

void AccelerationSettings::toggleAccelerationOfHost(const QString& queueRelevantHost) {
    const QString host = listedName(queueRelevantHost);
    QStringList whitelist = accelerationHostWhitelist();
    QStringList blacklist = accelerationHostBlacklist();
    if (acceleratesHost(queueRelevantHost)) {
        whitelist.removeAll(host);
        if (accelerates())
            blacklist.append(host);
    } else {
        if (!accelerates())
            whitelist.append(host);
        blacklist.removeAll(host);
    }
    setAccelerationHostWhitelist(whitelist);
    setAccelerationHostBlacklist(blacklist);
}

}  // namespace engine
