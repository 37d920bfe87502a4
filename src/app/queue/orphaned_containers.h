#pragma once

#include <QHash>
#include <QSet>
#include <QStringList>
#include <QVariantMap>
#include <vector>

#include "engine/queue/download_queue.h"
#include "platform/base/user_defaults.h"

namespace app {

/// The .orlop folders of downloads that the queue's file has not been told of, since the program
/// was killed when their first bytes had just come. They are looked for when they are first wanted.
class OrphanedContainers {
public:
    /// `folders`: where downloads go, without the folders below them. Those that were chosen for a
    /// single download are looked into when it is asked about.
    explicit OrphanedContainers(QStringList folders) : folders_(std::move(folders)) {}

    /// What the queue's file says of a download, with what its container says where that is more.
    [[nodiscard]] QVariantMap completed(const QVariantMap& archive);

    struct Container {
        QString path;
        QVariantMap archive;
    };
    /// Those with data that none of these downloads knows of. What holds none is removed.
    [[nodiscard]] std::vector<Container> unclaimed(const engine::Downloads& downloads);

private:
    [[nodiscard]] QVariantMap succeeded(const QVariantMap& archive);
    void read();
    void read(const QString& folder);

    const QStringList folders_;
    QSet<QString> readFolders_;
    std::vector<Container> containers_;
    /// By what tells downloads apart.
    QHash<QByteArray, QVariantMap> archives_;
};

/// The general folder and those of the rules, and the subfolders by date if there are to be any.
[[nodiscard]] QStringList foldersOfDownloads(const platform::UserDefaults& defaults,
                                             const QVariantList& specialCases);

}  // namespace app
