#pragma once

#include <QDateTime>
#include <optional>
#include <utility>

#include "platform/base/clock.h"

namespace engine {

class UserSettings;

/// When a download was added, answered and done.
class DownloadDates {
public:
    explicit DownloadDates(UserSettings& settings) : settings_(settings) {}

    [[nodiscard]] QDateTime date() { return invalidateDate(false); }
    /// With true, read again from the settings, which take the present if they have none.
    QDateTime invalidateDate(bool reload);

    /// When the latest answer came, on the scale that never jumps.
    [[nodiscard]] platform::Seconds downloadDate() { return invalidateDownloadDate(false); }
    /// With true, an answer has just come; then it is not known any more when it was done.
    platform::Seconds invalidateDownloadDate(bool answered);

    /// Fixed by the first reading.
    [[nodiscard]] QDateTime doneDate();

    /// The date of the file itself, as the server told it. Nothing: it did not.
    [[nodiscard]] const std::optional<QDateTime>& lastModifiedOnServerDate() const {
        return _lastModifiedOnServerDate;
    }
    void setLastModifiedOnServerDate(std::optional<QDateTime> date) {
        _lastModifiedOnServerDate = std::move(date);
    }

private:
    [[nodiscard]] QDateTime storedDate(const QString& key) const;

    UserSettings& settings_;
    std::optional<QDateTime> _date;
    std::optional<QDateTime> _doneDate;
    std::optional<QDateTime> _lastModifiedOnServerDate;
    std::optional<platform::Seconds> _downloadDate;
};

}  // namespace engine
