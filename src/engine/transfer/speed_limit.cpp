#include "engine/transfer/speed_limit.h"

#include "engine/context.h"
#include "engine/record/download_record.h"
#include "engine/transfer/transfer.h"
#include "http/shared/bandwidth_account.h"
#include "platform/base/run_loop.h"

namespace engine {

qint64 speedLimitOf(const DownloadRecord& download) {
    return qMax<qint64>(download.userSettings().value(keys::speedLimit).toLongLong(), 0);
}

void SpeedLimit::set(qint64 bytesPerSecond) {
    UserSettings& settings = transfer_.record().userSettings();
    if (bytesPerSecond > 0)
        settings.set(keys::speedLimit, bytesPerSecond);
    else
        settings.remove(keys::speedLimit);
    // What has come under another limit is no debt of this one's.
    account_.reset();
    const auto limit = account();
    for (const auto& worker : transfer_.workers())
        worker->setBandwidth(limit);
    transfer_.measureSpeedAnew();
}

std::shared_ptr<http::BandwidthAccount> SpeedLimit::account() {
    const auto limit = static_cast<quint64>(speedLimitOf(transfer_.record()));
    if (limit == 0) {
        account_.reset();
        return nullptr;
    }
    if (!account_)
        account_ =
            std::make_shared<http::BandwidthAccount>(transfer_.record().context().loop.clock());
    account_->setMaxBandwidthPerSecond(limit);
    return account_;
}

}  // namespace engine
