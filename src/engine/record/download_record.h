#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>
#include <optional>

#include "engine/record/download_dates.h"
#include "engine/record/download_identity.h"
#include "engine/record/status.h"
#include "engine/record/user_settings.h"
#include "platform/base/error.h"
#include "platform/net/url.h"

namespace engine {

struct Context;

/// What is known of one download: address, names, dates, status, and what must survive a restart.
/// Two records are equal only if they are the same object. Main thread.
class DownloadRecord : public std::enable_shared_from_this<DownloadRecord> {
public:
    virtual ~DownloadRecord() = default;
    DownloadRecord(const DownloadRecord&) = delete;
    DownloadRecord& operator=(const DownloadRecord&) = delete;

    [[nodiscard]] const Context& context() const { return context_; }

    /// For log lines: names it as the rows would, unless debug logging is on.
    [[nodiscard]] QString description() const;
    /// Whether debug lines about it are wanted even while debug logging is off; for this run only.
    [[nodiscard]] bool isDebugLogged() const { return isDebugLogged_; }
    void setDebugLogged(bool logged) { isDebugLogged_ = logged; }

    // Address. Once done, it is the file URL of the finished file.

    [[nodiscard]] const platform::Url& URL() const { return identity_.url(); }
    [[nodiscard]] QString URLString() const { return URL().absoluteString(); }
    [[nodiscard]] QString originalURLString() const { return identity_.originalURLString(); }
    [[nodiscard]] QString comparisonURLString() const { return URLString(); }
    /// Whether the address is a page to be read for the real one; kept until the address changes
    /// or `reevaluateDownloadPageURLStatus`.
    [[nodiscard]] bool isDownloadPageURL() const { return identity_.isDownloadPageURL(); }
    void reevaluateDownloadPageURLStatus() { identity_.reevaluateDownloadPageURLStatus(); }
    /// A setting by which names are made has changed.
    void invalidateIconAndNameCache() { identity_.invalidateIconAndNameCache(); }
    /// The host as the limits count it: in lower case, and the last two labels of a longer name.
    [[nodiscard]] const QString& queueRelevantHost() const { return identity_.queueRelevantHost(); }

    // Names.

    void setName(const QString& name) { identity_.setName(name); }
    [[nodiscard]] QString name() const { return identity_.name(); }
    /// What a row shows, which may be hidden or a location.
    [[nodiscard]] QString displayName() const { return identity_.displayName(); }
    [[nodiscard]] QString anonymizedName() const { return identity_.anonymizedName(); }
    [[nodiscard]] QString sortName() const { return identity_.sortName(); }
    [[nodiscard]] QString locationKey() const { return identity_.locationKey(); }
    /// The extension whose icon stands for the file, without its dot; a name without one has a
    /// pseudo extension. Nothing: the icon is hidden.
    [[nodiscard]] std::optional<QString> icon() const { return identity_.icon(); }
    [[nodiscard]] bool isMatchForSearchStrings(const QStringList& strings, bool checkURL) const;

    // Rules.

    /// Whether the pattern's labels are the last ones of the host's.
    [[nodiscard]] static bool hostComponents(const QStringList& pattern,
                                             const QStringList& matchComponents);
    [[nodiscard]] bool hasHostFromArray(const QStringList& hosts) const;
    [[nodiscard]] bool hasExtensionFromArray(const QStringList& extensions) const;
    [[nodiscard]] bool matchesSpecialCase(const QVariantMap& rule) const;

    // Dates.

    /// When it was added. With true, read again from the settings.
    [[nodiscard]] QDateTime date() const { return dates_.date(); }
    QDateTime invalidateDate(bool reload) { return dates_.invalidateDate(reload); }
    /// When it was done; the first reading fixes it.
    [[nodiscard]] QDateTime doneDate() { return dates_.doneDate(); }
    [[nodiscard]] DownloadDates& dates() { return dates_; }
    [[nodiscard]] const DownloadDates& dates() const { return dates_; }

    // What survives a restart.

    [[nodiscard]] UserSettings& userSettings() { return settings_; }
    [[nodiscard]] const UserSettings& userSettings() const { return settings_; }
    void userSettingsFromArchive(const QVariantMap& archive);
    /// Whether an earlier run of the program knew it.
    [[nodiscard]] bool isRestored() const { return isRestored_; }

    // The finished file; empty where there is none.

    /// Where it is as far as is known; the disk is not asked.
    [[nodiscard]] QString path() const { return identity_.path(); }
    /// Looks whether it is there, and elsewhere if it is not: what is found is its address from
    /// then on. Empty: it is gone. Asks the disk.
    QString findFile();
    [[nodiscard]] bool fileExists() { return !findFile().isEmpty(); }
    /// Found again if it was moved; if it is not found, nothing with `check`, else where it was.
    [[nodiscard]] QString pathByCheckingExistence(bool check);

    // Status.

    [[nodiscard]] DQDownloadStatus status() const { return _status; }
    /// Stopped by a failure and not by the user.
    [[nodiscard]] bool isInterrupted() const { return _isInterrupted; }
    /// Why the last transfer failed. Null: it did not, or another has begun.
    [[nodiscard]] const platform::Error* lastError() const { return lastError_.get(); }
    /// It failed in an earlier run, and nothing has been tried since then.
    [[nodiscard]] bool hasFailedBefore() const { return _isInterrupted && hasFailedBefore_; }
    /// The same, and was given up in that run.
    [[nodiscard]] bool wasGivenUp() const { return hasFailedBefore() && wasGivenUp_; }
    [[nodiscard]] bool isBeingRemoved() const { return _isBeingRemoved; }
    /// Being removed, or gone from the queue, with all that has come of it: it may be wanted back.
    [[nodiscard]] bool isWithdrawn() const { return _isWithdrawn; }
    [[nodiscard]] bool autoResumeAfterSleep() const { return _autoResumeAfterSleep; }
    void setAutoResumeAfterSleep(bool resume) { _autoResumeAfterSleep = resume; }
    /// It waits for more than its turn: admission passes it over. For this run only.
    [[nodiscard]] bool isHeldBack() const { return isHeldBack_; }
    void setHeldBack(bool isHeldBack) { isHeldBack_ = isHeldBack; }

protected:
    DownloadRecord(const Context& context, const platform::Url& url);

    DownloadIdentity& identity() { return identity_; }

    DQDownloadStatus _status = DQDownloadStatusPaused;
    bool _isInterrupted = false;
    bool _isBeingRemoved = false;
    bool _isWithdrawn = false;
    std::unique_ptr<const platform::Error> lastError_;
    bool hasFailedBefore_ = false;
    bool wasGivenUp_ = false;
    bool isDebugLogged_ = false;

private:
    const Context& context_;
    UserSettings settings_;
    DownloadDates dates_;
    DownloadIdentity identity_;
    bool _autoResumeAfterSleep = false;
    bool isRestored_ = false;
    bool isHeldBack_ = false;
};

}  // namespace engine
