#include "engine/record/download_dates.h"

#include "engine/now.h"
#include "engine/record/user_settings.h"
#include "platform/base/user_defaults.h"

namespace engine {

/// The date under a key of the settings, put there first if there is none.
QDateTime DownloadDates::storedDate(const QString& key) const {
    const QDateTime stored =
        platform::valueFromArchivedData(settings_.value(key).toByteArray()).toDateTime();
    if (stored.isValid())
        return stored;
    const QDateTime now = wallNow();
    settings_.set(key, platform::archivedData(now));
    return now;
}

QDateTime DownloadDates::invalidateDate(bool reload) {
    if (reload || !_date)
        _date = storedDate(keys::date);
    return *_date;
}

platform::Seconds DownloadDates::invalidateDownloadDate(bool answered) {
    if (answered || !_downloadDate) {
        _downloadDate = monotonicNow();
        _doneDate.reset();
    }
    return *_downloadDate;
}

QDateTime DownloadDates::doneDate() {
    if (!_doneDate)
        _doneDate = storedDate(keys::done);
    return *_doneDate;
}

}  // namespace engine
