#pragma once

#include <QVariantMap>

#include "engine/queue/download_queue.h"
#include "platform/base/user_defaults.h"

namespace app {

/// The archive of a download whose .orlop folder lies at `externalContainerPath` now: with its
/// paths led there if the folder was moved since it was written, else as it is.
[[nodiscard]] QVariantMap migratedArchive(const QVariantMap& archive,
                                          const QString& externalContainerPath);

/// Whether `archive`, found in an .orlop folder, tells of this very download, whose partial data is
/// not where it was any more.
[[nodiscard]] bool isMovedDataOf(const engine::DQDownload& download, const QVariantMap& archive);
/// Leads the download, which must not be running, to its data in `container`. False: it is not
/// there.
[[nodiscard]] bool adoptMovedData(engine::DQDownload& download, const QVariantMap& archive,
                                  const QString& container);

/// Makes a download from what the queue's file or an .orlop folder says of it and puts it at the
/// end of the queue. `externalContainerPath` is the .orlop folder; empty for the queue's file.
/// Null: the archive has no usable address.
engine::DownloadPtr addDownloadFromArchive(engine::DownloadQueue& queue,
                                           const platform::UserDefaults& defaults,
                                           const QVariantMap& archive,
                                           const QString& externalContainerPath);

}  // namespace app
