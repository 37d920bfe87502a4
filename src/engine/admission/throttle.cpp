#include "engine/admission/throttle.h"

#include "engine/settings.h"
#include "http/http_request.h"

namespace engine {
namespace {

platform::UserDefaults& defaults() {
    return platform::standardDefaults();
}

}  // namespace

bool Throttle::isAvailable() {
    static const bool inForce = [] {
        const auto value = [](const auto& setting) { return QVariant(setting.fallback); };
        defaults().registerDefaults(
            {{settings::throttleSupported.name(), value(settings::throttleSupported)},
             {settings::throttleLimit.name(), value(settings::throttleLimit)},
             {settings::filenameExtensionPolicy.name(), value(settings::filenameExtensionPolicy)}});
        return defaults().get(settings::throttleSupported);
    }();
    return inForce;
}

bool Throttle::setAvailable(bool available) {
    defaults().set(settings::throttleSupported, available);
    return available == isAvailable();
}

bool Throttle::isThrottled() {
    return isAvailable() && defaults().get(settings::throttleEnabled);
}

void Throttle::setThrottled(bool throttled) {
    if (!isAvailable())
        return;
    defaults().set(settings::throttleEnabled, throttled);
    apply();
}

qint64 Throttle::throttleLimit() {
    const qint64 limit = defaults().get(settings::throttleLimit);
    return limit < 1 ? 1000 : limit;
}

void Throttle::setThrottleLimit(qint64 limit) {
    defaults().set(settings::throttleLimit, limit);
    if (isThrottled())
        apply();
}

void Throttle::apply() {
    http::HTTPRequest::setMaxBandwidthPerSecond(
        isThrottled() ? static_cast<quint64>(throttleLimit()) : 0);
}

}  // namespace engine
