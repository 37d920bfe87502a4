#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

#include "engine/lifecycle/status_change.h"
#include "platform/base/clock.h"
#include "platform/net/url.h"

namespace engine {

class DQDownloadWorkerPrototype;
class FinishedFiles;

/// How a server refused a connection for now.
struct Refusal {
    /// The worker that asked for it.
    const DQDownloadWorkerPrototype& worker;
    /// Seconds after which the server wants to be asked again. Nothing: it did not say.
    std::optional<platform::Seconds> told;
    /// Seconds to wait if it did not, and serves nobody else.
    platform::Seconds pause = 0;
};

/// What a download needs of the queue in which it stands. Main thread.
class DownloadHost {
public:
    virtual ~DownloadHost() = default;

    /// Called at once, when everything about the download fits its new status.
    virtual void statusDidChange(const StatusChange& change) = 0;
    /// It has come further, or something else that shows has changed.
    virtual void downloadDidChange(DQDownload& download) = 0;
    /// It waits, and its place among those that wait is another one now.
    virtual void placeDidChange() = 0;
    /// It is done for: the user removed it.
    virtual void downloadWasRemoved(DQDownload& download) = 0;
    /// Its file could not be moved to the Trash and is still there.
    virtual void fileWasNotThrownAway(const QString& path) = 0;
    /// A transfer of any download failed. Answers after how many seconds this download is to be
    /// tried again by itself. Nothing: it is not.
    [[nodiscard]] virtual std::optional<platform::Seconds> noteFailure() = 0;

    /// The server of a running download has refused one of its workers for now.
    virtual void serverDidRefuse(const DQDownload& download, const Refusal& refusal) = 0;
    /// Its user does not want to wait for the server any longer.
    virtual void releaseServer(const DQDownload& download) = 0;
    /// One of its workers is done.
    virtual void connectionDidEnd(const DQDownload& download) = 0;
    /// How many connections at once a running download may have: at least 1, and a very large
    /// number if its server has never refused one.
    [[nodiscard]] virtual qint64 connectionsFor(const DQDownload& download) = 0;

    /// Makes a download of each address. `pageChain`: the download pages that led to it, the one
    /// that it was found on last.
    virtual void openURLsOfPage(const std::vector<platform::Url>& urls,
                                const QStringList& pageChain) = 0;
    /// What an earlier run has finished without being able to save that.
    [[nodiscard]] virtual FinishedFiles& finishedFiles() = 0;
    /// Its partial file lies on a volume that is away.
    virtual void volumeIsMissing(DQDownload& download) = 0;
};

}  // namespace engine
