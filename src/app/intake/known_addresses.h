#pragma once

#include <QHash>
#include <QString>

#include "app/queue/download_order.h"

namespace app {

/// The addresses of the queue as it stands, among which duplicates are looked for. Main thread.
///
/// Most intakes are of one address. Comparing it with each download costs far less than an index of
/// them all, so that is made only for one who asks more often.
class KnownAddresses {
public:
    /// Knows none.
    KnownAddresses() = default;
    explicit KnownAddresses(const Downloads& queue) : unindexed_(queue) {}

    /// The last download of this address. Null: there is none.
    [[nodiscard]] engine::DownloadPtr find(const QString& address);

private:
    void makeIndex();

    Downloads unindexed_;
    QHash<QString, engine::DownloadPtr> index_;
    int lookups_ = 0;
};

}  // namespace app
