#pragma once

#include <QtGlobal>
#include <memory>

namespace http {
class BandwidthAccount;
}

namespace engine {

class DownloadRecord;
class Transfer;

/// The limit of one download in bytes per second; 0: there is none.
[[nodiscard]] qint64 speedLimitOf(const DownloadRecord& download);

/// How fast one download may come, all its connections together, beside the limit of all downloads.
/// Kept with it over restarts. Main thread.
class SpeedLimit {
public:
    explicit SpeedLimit(Transfer& transfer) : transfer_(transfer) {}

    /// Counts at once. 0: none.
    void set(qint64 bytesPerSecond);
    /// For workers that are about to start. Null: they need none.
    [[nodiscard]] std::shared_ptr<http::BandwidthAccount> account();

private:
    Transfer& transfer_;
    std::shared_ptr<http::BandwidthAccount> account_;
};

}  // namespace engine
