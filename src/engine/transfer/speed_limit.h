#pragma once

#include <QtGlobal>
#include <memory>

namespace http {
class BandwidthAccount;
}

namespace engine {

class Transfer;

/// How fast one download may come, all its connections together, beside the limit of all downloads.
/// Kept with it over restarts. Main thread.
class SpeedLimit {
public:
    explicit SpeedLimit(Transfer& transfer) : transfer_(transfer) {}

    /// Bytes per second; 0: there is none.
    [[nodiscard]] qint64 bytesPerSecond() const;
    /// Counts at once.
    void set(qint64 bytesPerSecond);
    /// For workers that are about to start. Null: they need none.
    [[nodiscard]] std::shared_ptr<http::BandwidthAccount> account();

private:
    Transfer& transfer_;
    std::shared_ptr<http::BandwidthAccount> account_;
};

}  // namespace engine
