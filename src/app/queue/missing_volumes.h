#pragma once

#include <QMap>
#include <QString>
#include <functional>
#include <memory>
#include <vector>

namespace engine {
class DQDownload;
}

namespace app {

/// Which downloads wait for which volume to come back. Main thread.
class MissingVolumes {
public:
    using Downloads = std::vector<std::shared_ptr<engine::DQDownload>>;
    using IsThere = std::function<bool(const QString& volume)>;
    /// `isThere` tells whether a volume is mounted.
    explicit MissingVolumes(IsThere isThere) : isThere_(std::move(isThere)) {}

    /// Answers a sentence that tells of it, in the user's language.
    QString note(const std::shared_ptr<engine::DQDownload>& download);
    /// Those whose volume has come back, unless they were started, changed or removed meanwhile.
    /// None is answered twice.
    [[nodiscard]] Downloads takeReturned();

private:
    const IsThere isThere_;
    QMap<QString, std::vector<std::weak_ptr<engine::DQDownload>>> waiting_;  ///< By volume.
};

}  // namespace app
