#include "engine/record/download_dates.h"

#include "engine/context.h"
#include "engine/record/user_settings.h"
#include "platform/base/user_defaults.h"

namespace engine {
namespace {

/// Long lists come in few moments, and those of one share its bytes.
QVariant archivedMoment(const QDateTime& moment) {
    thread_local QDateTime last;
    thread_local QByteArray archived;
    if (moment != last) {
        last = moment;
        archived = platform::archivedData(moment);
    }
    return archived;
}

}  // namespace

/// The date under a key of the settings, put there first if there is none.
QDateTime DownloadDates::storedDate(const QString& key) {
    const QDateTime stored =
        platform::valueFromArchivedData(settings_.value(key).toByteArray()).toDateTime();
    if (stored.isValid())
        return stored;
    const QDateTime now = context_.wallNow();
    settings_.set(key, archivedMoment(now));
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
