#include "engine/queue/host_limits.h"

#include <algorithm>

namespace engine {

void HostLimits::hold(const QString& host, platform::Seconds end) {
    platform::Seconds& heldUntil = hosts_[host].heldUntil;
    heldUntil = std::max(heldUntil, end);
}

void HostLimits::release(const QString& host) {
    if (const auto found = hosts_.find(host); found != hosts_.end())
        found->heldUntil = 0;
}

void HostLimits::noteServed(const QString& host, qint64 connections) {
    std::optional<qint64>& known = hosts_[host].connections;
    known = std::max<qint64>(1, std::min(known.value_or(connections), connections));
}

platform::Seconds HostLimits::remaining(const QString& host, platform::Seconds now) const {
    const auto found = hosts_.constFind(host);
    return found == hosts_.cend() ? 0 : std::max(0.0, found->heldUntil - now);
}

std::optional<qint64> HostLimits::connections(const QString& host) const {
    return hosts_.value(host).connections;
}

std::optional<platform::Seconds> HostLimits::nextEnd(platform::Seconds now) const {
    std::optional<platform::Seconds> next;
    for (const Limit& limit : hosts_) {
        if (limit.heldUntil > now && (!next || limit.heldUntil < *next))
            next = limit.heldUntil;
    }
    return next;
}

}  // namespace engine
