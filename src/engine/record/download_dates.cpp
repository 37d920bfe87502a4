#include "engine/record/download_dates.h"

#include "engine/context.h"
#include "engine/record/user_settings.h"
#include "platform/base/user_defaults.h"

namespace engine {

/// The date under a key of the settings, put there first if there is none.
QDateTime DownloadDates::storedDate(const QString& key) {
    const QDateTime stored =
        platform::valueFromArchivedData(settings_.value(key).toByteArray()).toDateTime();
    if (stored.isValid())
        return stored;
    const QDateTime now = context_.wallNow();
    settings_.set(key, platform::archivedData(now));
    return now;
}

QDateTime DownloadDates::invalidateDate(bool reload) {
    if (reload || !_date.isValid())
        _date = storedDate(keys::date);
    return _date;
}

void DownloadDates::noteAnswer() {
    _downloadDate = context_.monotonicNow();
    _doneDate.reset();
}

QDateTime DownloadDates::doneDate() {
    if (!_doneDate)
        _doneDate = storedDate(keys::done);
    return *_doneDate;
}

}  // namespace engine
