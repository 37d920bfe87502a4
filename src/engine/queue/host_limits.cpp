#include "engine/queue/host_limits.h"

#include <algorithm>
#include <utility>

namespace engine {

void HostLimits::hold(const QString& host, platform::Seconds end) {
    platform::Seconds& heldUntil = hosts_[host].heldUntil;
    heldUntil = std::max(heldUntil, end);
}

void HostLimits::pause(const QString& host, platform::Seconds end) {
    platform::Seconds& pausedUntil = hosts_[host].pausedUntil;
    pausedUntil = std::max(pausedUntil, end);
}

void HostLimits::release(const QString& host) {
    if (const auto found = hosts_.find(host); found != hosts_.end())
        found->heldUntil = found->pausedUntil = 0;
}

void HostLimits::Limit::forgetWhatIsOver(platform::Seconds now) {
    if (end() > 0 && end() <= now) {
        heldUntil = pausedUntil = 0;
        supposed.reset();
    }
}

void HostLimits::noteRefusal(const QString& host, qint64 others, platform::Seconds now) {
    Limit& limit = hosts_[host];
    limit.forgetWhatIsOver(now);
    std::optional<qint64>& supposed = limit.supposed;
    // One that has refused all says nothing.
    supposed =
        others >= 1 ? std::optional(std::min(supposed.value_or(others), others)) : std::nullopt;
}

void HostLimits::noteService(const QString& host, platform::Seconds now) {
    const auto found = hosts_.find(host);
    if (found == hosts_.end())
        return;
    found->forgetWhatIsOver(now);
    if (const auto supposed = std::exchange(found->supposed, std::nullopt))
        found->connections = std::min(found->connections.value_or(*supposed), *supposed);
    found->pausedUntil = 0;
}

platform::Seconds HostLimits::remaining(const QString& host, platform::Seconds now) const {
    const auto found = hosts_.constFind(host);
    return found == hosts_.cend() ? 0 : std::max(0.0, found->end() - now);
}

std::optional<qint64> HostLimits::connections(const QString& host) const {
    return hosts_.value(host).connections;
}

std::optional<platform::Seconds> HostLimits::nextEnd(platform::Seconds now) const {
    std::optional<platform::Seconds> next;
    for (const Limit& limit : hosts_) {
        if (limit.end() > now && (!next || limit.end() < *next))
            next = limit.end();
    }
    return next;
}

}  // namespace engine
