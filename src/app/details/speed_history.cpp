#include "app/details/speed_history.h"

#include <algorithm>
#include <cmath>

#include "engine/lifecycle/download.h"

namespace app {
namespace {

constexpr platform::Seconds interval = 1;
constexpr platform::Seconds standstill = 3;
/// What comes in less would look like a speed that nothing has.
constexpr platform::Seconds shortest = 0.25;

}  // namespace

void SpeedHistory::note(const engine::DQDownload& download, platform::Seconds now) {
    if (download.status() != engine::DQDownloadStatusDownloading)
        return;
    std::deque<Sample>& samples = samples_[&download];
    Sample sample{now, download.figures().downloaded, now};
    // Under a limit bytes come in gusts, and what lies between two of them is no standstill.
    if (!samples.empty() && sample.bytes == samples.back().bytes &&
        now - samples.back().at < standstill)
        return;
    // The last one moves on with what comes, since the end of a download has no figures any more.
    // A count that has fallen is that of the next attempt, and takes nothing from the last.
    const bool isSameAttempt = !samples.empty() && sample.bytes >= samples.back().bytes;
    if (isSameAttempt && samples.size() > 1 &&
        (now - samples[samples.size() - 2].at < interval ||
         now - samples.back().begun < interval / 2)) {
        sample.begun = samples.back().begun;
        samples.pop_back();
    }
    samples.push_back(sample);
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
        if (end->bytes < begin.bytes)
            continue;
        const double rate =
            static_cast<double>(end->bytes - begin.bytes) / std::max(end->at - begin.at, shortest);
        const int first = std::min(slotAt(begin.at), reach - 1);
        std::fill(rates.begin() + first, rates.begin() + std::max(slotAt(end->at), first + 1),
                  rate);
    }
    const int end = slotAt(samples.back().at);
    if (now - samples.back().at < standstill && end > 0)
        std::fill(rates.begin() + end, rates.end(), rates[static_cast<std::size_t>(end) - 1]);
    return rates;
}

}  // namespace app
