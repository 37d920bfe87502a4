#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

#include "platform/base/timer.h"
#include "platform/net/network_loop.h"
#include "platform/net/proxies/script_process.h"
#include "platform/net/url.h"

namespace platform {

/// One question to an automatic configuration script, asked in a process of its own that is ended
/// with this object.
///
/// Network loop's thread only.
class ProxyScriptRun {
public:
    /// What FindProxyForURL answered. Nothing: there was no answer, or none in time; the log says
    /// why.
    using Done = std::function<void(const std::optional<QString>& answer)>;

    /// In seconds, look-ups of names included.
    static constexpr Seconds deadline = 10;

    /// Calls `done` once, on a later turn of the loop; the object may die in it.
    ProxyScriptRun(NetworkLoop& loop, const QString& script, const Url& url, Done done);
    ProxyScriptRun(const ProxyScriptRun&) = delete;
    ProxyScriptRun& operator=(const ProxyScriptRun&) = delete;

private:
    void readAnswer();
    void readLines();
    void finish(const std::optional<QString>& answer);
    void fail(const QString& why);

    Timer deadline_;
    Done done_;
    QByteArray received_;
    // In this order: the watch is of the process's output.
    std::unique_ptr<ScriptProcess> process_;
    std::optional<DescriptorWatch> watch_;
};

}  // namespace platform
