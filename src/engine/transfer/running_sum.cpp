#include "engine/transfer/running_sum.h"

#include <algorithm>
#include <utility>

#include "platform/files/disks.h"

namespace engine {
namespace {

/// What is not longer is read at its end in a moment.
constexpr qint64 step = qint64{4} << 20;
/// The disk's threads have other things to do, too.
constexpr qint64 mostAtOnce = qint64{32} << 20;

}  // namespace

struct RunningSum::Reading {
    Reading(const QString& ofPath, QCryptographicHash::Algorithm algorithm, platform::Disk& ofDisk)
        : path(ofPath), reader(std::make_shared<SumReader>(path, algorithm)), disk(ofDisk) {}

    const QString path;
    const std::shared_ptr<SumReader> reader;
    platform::Disk& disk;
    qint64 followed = 0;  ///< So much may be read.
    qint64 asked = 0;     ///< So much has been or is being read.
    bool isBusy = false;
    std::atomic<bool> isCancelled = false;  ///< Stops what the disk's thread is at.
};

void RunningSum::follow(const QString& path, QCryptographicHash::Algorithm algorithm,
                        qint64 length) {
    if (reading_ && (reading_->path != path || reading_->reader->algorithm() != algorithm ||
                     reading_->followed > length))
        forget();
    if (!reading_)
        reading_ = std::make_shared<Reading>(path, algorithm, disks_.holding(path));
    reading_->followed = length;
    readOn();
}

qint64 RunningSum::nextLength() const {
    return (reading_ ? reading_->followed : 0) + step;
}

void RunningSum::readOn() {
    if (reading_->isBusy || reading_->followed - reading_->asked < step)
        return;
    reading_->isBusy = true;
    reading_->asked = std::min(reading_->followed, reading_->asked + mostAtOnce);
    const auto canGoOn = std::make_shared<bool>(false);
    reading_->disk.run([reading = reading_, end = reading_->asked,
                        canGoOn] { *canGoOn = reading->reader->readTo(end, reading->isCancelled); },
                       [this, weak = std::weak_ptr(reading_), canGoOn] {
                           // Expired as soon as we are gone or have dropped it.
                           const auto kept = weak.lock();
                           if (!kept || !*canGoOn)
                               return;
                           kept->isBusy = false;
                           readOn();
                       });
}

void RunningSum::forget() {
    if (const auto reading = std::exchange(reading_, nullptr))
        reading->isCancelled = true;
}

std::shared_ptr<SumReader> RunningSum::take() {
    const auto reading = std::exchange(reading_, nullptr);
    return reading ? reading->reader : nullptr;
}

}  // namespace engine
