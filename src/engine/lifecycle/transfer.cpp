#include "engine/lifecycle/transfer.h"

#include <QtMath>
#include <algorithm>
#include <iterator>

#include "engine/acceleration/accelerator.h"
#include "engine/admission/download_manager.h"
#include "engine/now.h"
#include "engine/paths/download_paths.h"
#include "engine/record/download.h"
#include "engine/record/user_settings.h"
#include "engine/settings.h"
#include "engine/workers/partial_file_marks.h"
#include "links/paths/file_attributes.h"
#include "platform/base/log.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

constexpr platform::Seconds updateInterval = 0.1;

}  // namespace

bool Transfer::contains(const Worker& worker) const {
    return std::any_of(_downloadWorkers.begin(), _downloadWorkers.end(),
                       [&](const Worker::Pointer& other) { return other.get() == &worker; });
}

void Transfer::replaceWorker(const Worker& worker, Worker::Pointer replacement) {
    const auto found =
        std::find_if(_downloadWorkers.begin(), _downloadWorkers.end(),
                     [&](const Worker::Pointer& other) { return other.get() == &worker; });
    if (found != _downloadWorkers.end())
        *found = std::move(replacement);
}

void Transfer::removeWorker(const Worker& worker) {
    std::erase_if(_downloadWorkers,
                  [&](const Worker::Pointer& other) { return other.get() == &worker; });
}

void Transfer::dropWorkers(std::size_t firstDropped) {
    if (firstDropped >= _downloadWorkers.size())
        return;
    const auto first = _downloadWorkers.begin() + static_cast<std::ptrdiff_t>(firstDropped);
    const Workers dropped(std::make_move_iterator(first),
                          std::make_move_iterator(_downloadWorkers.end()));
    _downloadWorkers.resize(firstDropped);
}

OverallFigures Transfer::figures(const Worker* reporting) const {
    if (frozenFigures_)
        return *frozenFigures_;
    return overallFigures(_downloadWorkers, reporting,
                          download_.userSettings().contains(keys::accelerationWorkers));
}

void Transfer::resetProgress() {
    lastFractionShown_.reset();
    _downloadFraction = 0;
    _shouldWriteMetadataToDownloadBundle = true;
}

qint64 Transfer::noteReceivedBytes(const Worker& worker) {
    if (!hasWorkers())
        return 0;
    const OverallFigures reached = figures(&worker);
    // Nobody goes on with a file that came whole at once, nor sees how far it has got.
    const bool cameAtOnce = !lastFractionShown_ && reached.total() == reached.expected;
    if (!cameAtOnce)
        writeMetadataIfNecessary();
    if (reached.expected < 1)
        return 0;
    const double fraction =
        static_cast<double>(reached.total()) / static_cast<double>(reached.expected);
    if (fraction > _downloadFraction || reached.total() == reached.expected) {
        _downloadFraction = std::min(fraction, 1.0);
        const platform::Seconds now = monotonicNow();
        if (!cameAtOnce) {
            if (!_lastDownloadUpdateDate || now - *_lastDownloadUpdateDate > updateInterval) {
                mainController().updateDownload(download_);
                _lastDownloadUpdateDate = now;
            }
            showFraction();
        }
        speed_.note(now, reached.downloaded);
    }
    return reached.truncation;
}

void Transfer::writeMetadataIfNecessary() {
    if (_hasJustAddedAccelerationWorkers) {
        _hasJustAddedAccelerationWorkers = false;
        _shouldWriteMetadataToDownloadBundle = true;
    }
    if (!_shouldWriteMetadataToDownloadBundle ||
        !download_.paths().hasIntermediateDownloadTargetPath())
        return;
    recordAccelerationWorkers(download_);
    // Long before they are complete: nobody may hear of that any more.
    if (_downloadWorkers.size() >= 2)
        markWithParts(download_.paths().intermediateDownloadTargetPath(false, false));
    if (platform::standardDefaults().get(settings::storeMetadataLocally))
        download_.userSettingsArchiveWithPausedStatus(false, true);
    _shouldWriteMetadataToDownloadBundle = false;
}

/// On the container, where file managers and scripts can see it.
void Transfer::showFraction() {
    const int hundredths = qRound(_downloadFraction * 100);
    const bool isFirst = !lastFractionShown_;
    if (!isFirst && (!_canSetDownloadFractionAttribute || hundredths == *lastFractionShown_))
        return;
    lastFractionShown_ = hundredths;
    const QString container = download_.paths().downloadContainerPath();
    if (container.isEmpty() || !platform::pathExists(container))
        return;
    _canSetDownloadFractionAttribute =
        links::setFractionCompleted(container, QString::number(hundredths / 100.0, 'f', 2));
    if (!_canSetDownloadFractionAttribute)
        platform::log(
            u"cannot set fraction completed for download: %1"_s.arg(download_.description()));
}

}  // namespace engine
