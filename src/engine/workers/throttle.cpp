#include "engine/workers/throttle.h"

#include "engine/settings.h"
#include "http/http_request.h"

namespace engine {

Throttle::Throttle(platform::UserDefaults& defaults)
    : defaults_(defaults), isAvailable_(defaults.get(settings::throttleSupported)) {}

bool Throttle::setAvailable(bool available) {
    defaults_.set(settings::throttleSupported, available);
    return available == isAvailable();
}

bool Throttle::isThrottled() const {
    return isAvailable() && defaults_.get(settings::throttleEnabled);
}

void Throttle::setThrottled(bool throttled) {
    if (!isAvailable())
        return;
    defaults_.set(settings::throttleEnabled, throttled);
    apply();
}

qint64 Throttle::throttleLimit() const {
    return defaults_.get(settings::throttleLimit);
}

void Throttle::setThrottleLimit(qint64 limit) {
    defaults_.set(settings::throttleLimit, limit);
    if (isThrottled())
        apply();
}

void Throttle::apply() const {
    http::HTTPRequest::setMaxBandwidthPerSecond(
        isThrottled() ? static_cast<quint64>(throttleLimit()) : 0);
}

}  // namespace engine
