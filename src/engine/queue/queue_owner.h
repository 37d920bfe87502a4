#pragma once

#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

#include "engine/lifecycle/status_change.h"
#include "platform/net/url.h"

namespace engine {

/// Whoever shows and saves a queue. Main thread.
class QueueOwner {
public:
    virtual ~QueueOwner() = default;

    /// Membership or order has changed.
    virtual void queueDidChange() = 0;
    /// It is in the queue no more, whoever took it out; it lives until the next turn of the loop.
    virtual void downloadDidLeave(const DQDownload& download) = 0;
    /// Another record has taken its place; `downloadDidLeave` has been told.
    virtual void downloadWasReplaced(const std::shared_ptr<DQDownload>& former,
                                     const std::shared_ptr<DQDownload>& replacement) = 0;
    /// A download is at another status; the queue's own books are right already. It may be taken
    /// out of the queue here.
    virtual void statusDidChange(const StatusChange& change) = 0;
    /// It has come further, or something else that shows has changed.
    virtual void downloadDidChange(DQDownload& download) = 0;
    /// The user removed it: it is to leave the queue.
    virtual void downloadWasRemoved(DQDownload& download) = 0;
    /// A batch is over, of which single changes were told as usual: time for what is done once for
    /// all of them.
    virtual void batchDidEnd() = 0;

    /// Makes a download of each address. `pageChain`: the download pages that led to it, the one
    /// that it was found on last.
    virtual void openURLsOfPage(const std::vector<platform::Url>& urls,
                                const QStringList& pageChain) = 0;
    /// A download cannot go on, since its partial file lies on a volume that is away.
    virtual void volumeIsMissing(DQDownload& download) = 0;
    /// The file of a removed download is still there.
    virtual void fileWasNotThrownAway(const QString& path) = 0;
};

}  // namespace engine
