#pragma once

#include <QObject>
#include <memory>
#include <vector>

#include "engine/lifecycle/download.h"

namespace app {

class DQMainController;

/// Once a list of checksums has come, files of the queue that lie beside it on their server are
/// compared with what it says of them, those too that come later in this run. What the user says
/// himself of a file stands above that. Main thread.
class SiblingChecksums final : public QObject {
public:
    /// The controller outlives it.
    explicit SiblingChecksums(DQMainController& controller);

private:
    void noteEnd(const engine::DownloadPtr& download);
    void readList(const engine::DownloadPtr& list);
    void apply(const engine::DQDownload& list, const QByteArray& content);
    void applyTo(const engine::DownloadPtr& file);
    void expect(const engine::DownloadPtr& file, const engine::Checksum& checksum);

    struct List {
        QString folder;  ///< Its address without its name.
        QString name;
        QByteArray content;
    };
    DQMainController& controller_;
    std::vector<List> lists_;
};

}  // namespace app
