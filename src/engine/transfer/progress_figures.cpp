#include "engine/transfer/progress_figures.h"

#include <algorithm>

#include "engine/workers/download_worker_prototype.h"

namespace engine {
namespace {

constexpr platform::Seconds quantumLength = 30;
constexpr platform::Seconds shortestAverage = 1;
/// In which what was on its way already has come.
constexpr platform::Seconds settling = 2;

}  // namespace

OverallFigures overallFigures(
    const std::vector<std::shared_ptr<DQDownloadWorkerPrototype>>& workers,
    const DQDownloadWorkerPrototype* reporting, bool fractionsAreRecorded) {
    OverallFigures figures;
    if (workers.empty())
        return figures;
    const DQDownloadWorkerPrototype& first = *workers.front();
    const qint64 firstTotal = first.downloadedBytes() + first.resumeByteOffset();
    const bool haveEnds = first.endByte() >= 1;
    figures.isLengthKnown = haveEnds || first.expectedBytes() >= 1;
    if (!haveEnds) {
        const qint64 coming =
            first.expectedBytes() < 1 ? first.downloadedBytes() : first.expectedBytes();
        figures.expected = coming + first.resumeByteOffset();
    }
    if (workers.size() >= 2 && reporting == &first && fractionsAreRecorded &&
        firstTotal >= workers[1]->fractionStartByte())
        figures.truncation = workers[1]->fractionStartByte();
    for (const auto& worker : workers) {
        if (haveEnds)
            figures.expected += worker->endByte() - worker->fractionStartByte() + 1;
        figures.downloaded += worker->downloadedBytes();
        figures.offset += worker->resumeByteOffset();
    }
    figures.downloaded = std::min(figures.downloaded, figures.expected);
    return figures;
}

void SpeedMeter::note(platform::Seconds now, qint64 downloadedBytes) {
    if (settlesUntil_ && now < *settlesUntil_) {
        begun_ = ongoing_ = Quantum{now, downloadedBytes};
        return;
    }
    if (ongoing_ && now - ongoing_->date <= quantumLength)
        return;
    if (ongoing_)
        previous_ = ongoing_;
    ongoing_ = Quantum{now, downloadedBytes};
}

void SpeedMeter::beginAnew(platform::Seconds now, qint64 downloadedBytes) {
    *this = {};
    begun_ = Quantum{now, downloadedBytes};
    settlesUntil_ = now + settling;
}

std::optional<SpeedMeter::Span> SpeedMeter::span(platform::Seconds now, qint64 downloadedBytes,
                                                 platform::Seconds start) const {
    if (previous_) {
        const double uncovered = (quantumLength - (now - ongoing_->date)) / quantumLength;
        const double bytes = static_cast<double>(downloadedBytes - ongoing_->bytes) +
                             static_cast<double>(ongoing_->bytes - previous_->bytes) * uncovered;
        if (bytes >= 0)
            return Span{bytes, quantumLength};
    }
    const Quantum begun = begun_.value_or(Quantum{start, 0});
    const platform::Seconds elapsed = now - begun.date;
    if (elapsed <= shortestAverage || (begun_ && downloadedBytes <= begun.bytes))
        return std::nullopt;
    return Span{static_cast<double>(downloadedBytes - begun.bytes), elapsed};
}

}  // namespace engine
