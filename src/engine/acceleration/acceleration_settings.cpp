#include "engine/acceleration/acceleration_settings.h"

#include "engine/settings.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

QString listedName(const QString& host) {
    return host.isEmpty() ? u"?"_s : host;
}

void storeHosts(platform::UserDefaults& defaults, const platform::Setting<QStringList>& setting,
                const QStringList& hosts) {
    if (hosts.isEmpty())
        defaults.removeObject(setting.name());
    else
        defaults.setObject(setting.name(), hosts);
}

}  // namespace

bool AccelerationSettings::accelerates() const {
    return defaults_.get(settings::accelerationEnabled);
}

void AccelerationSettings::setAccelerates(bool accelerates) {
    defaults_.set(settings::accelerationEnabled, accelerates);
}

qint64 AccelerationSettings::accelerationFactor() const {
    return defaults_.get(settings::accelerationChannels);
}

void AccelerationSettings::setAccelerationFactor(qint64 factor) {
    defaults_.set(settings::accelerationChannels, factor);
}

qint64 AccelerationSettings::acceleratorFractionMinimumSize() const {
    return defaults_.get(settings::accelerationMinimumFractionSize);
}

bool AccelerationSettings::sharesSlowParts() const {
    return defaults_.get(settings::accelerationSharesSlowParts);
}

bool AccelerationSettings::writesPartsInPlace() const {
    return defaults_.get(settings::accelerationPartsInPlace);
}

QStringList AccelerationSettings::accelerationHostWhitelist() const {
    return defaults_.stringArrayForKey(settings::accelerationHostWhitelist.name());
}

void AccelerationSettings::setAccelerationHostWhitelist(const QStringList& hosts) {
    storeHosts(defaults_, settings::accelerationHostWhitelist, hosts);
}

QStringList AccelerationSettings::accelerationHostBlacklist() const {
    return defaults_.stringArrayForKey(settings::accelerationHostBlacklist.name());
}

void AccelerationSettings::setAccelerationHostBlacklist(const QStringList& hosts) {
    storeHosts(defaults_, settings::accelerationHostBlacklist, hosts);
}

bool AccelerationSettings::acceleratesHost(const QString& queueRelevantHost) const {
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
