#include "app/details/speed_history.h"

#include <algorithm>
#include <cmath>

#include "engine/lifecycle/download.h"

namespace app {

void SpeedHistory::note(const engine::DQDownload& download, platform::Seconds now) {
    constexpr platform::Seconds interval = 1;
    if (download.status() != engine::DQDownloadStatusDownloading)
        return;
    std::deque<Sample>& samples = samples_[&download];
    if (!samples.empty() && now - samples.back().at < interval)
        return;
    samples.push_back({now, download.figures().downloaded});
    while (samples.front().at < now - reach)
        samples.pop_front();
}

std::vector<double> SpeedHistory::rates(const engine::DQDownload& download,
                                        platform::Seconds now) const {
    const auto found = samples_.find(&download);
    if (found == samples_.end() || found->second.size() < 2 ||
        found->second.back().at < now - reach)
        return {};
    std::vector<double> rates(reach, 0);
    const auto slotAt = [now](platform::Seconds time) {
        return std::clamp(reach - static_cast<int>(std::lround(now - time)), 0, reach);
    };
    const std::deque<Sample>& samples = found->second;
    for (auto end = std::next(samples.begin()); end != samples.end(); ++end) {
        const Sample& begin = *std::prev(end);
        // A count that has fallen belongs to another attempt.
        const qint64 bytes = std::max<qint64>(end->bytes - begin.bytes, 0);
        const double rate = static_cast<double>(bytes) / (end->at - begin.at);
        std::fill(rates.begin() + slotAt(begin.at), rates.begin() + slotAt(end->at), rate);
    }
    return rates;
}

}  // namespace app
