#pragma once

#include <QDateTime>
#include <optional>
#include <utility>

#include "platform/base/clock.h"

namespace engine {

class UserSettings;
struct Context;

/// When a download was added, answered and done.
class DownloadDates {
public:
    DownloadDates(const Context& context, UserSettings& settings)
        : context_(context), settings_(settings) {}

    [[nodiscard]] QDateTime date() const { return _date; }
    /// With true, read again from the settings, which take the present if they have none.
    QDateTime invalidateDate(bool reload);

    /// When the latest answer came, on the scale that never jumps.
    /// Nothing: none has.
    [[nodiscard]] std::optional<platform::Seconds> downloadDate() const { return _downloadDate; }
    /// An answer has just come; it is not known any more when the download was done.
    void noteAnswer();

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
    [[nodiscard]] QDateTime storedDate(const QString& key);

    const Context& context_;
    UserSettings& settings_;
    QDateTime _date;
    std::optional<QDateTime> _doneDate;
    std::optional<QDateTime> _lastModifiedOnServerDate;
    std::optional<platform::Seconds> _downloadDate;
};

}  // namespace engine
