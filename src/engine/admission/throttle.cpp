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
    static const bool inForce = defaults().get(settings::throttleSupported);
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
    return defaults().get(settings::throttleLimit);
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
