#pragma once

#include <QString>
#include <QVariantMap>
#include <functional>
#include <memory>

namespace engine {

class DownloadRecord;
class MetadataFile;

/// Where the data of one download grows and where the finished file goes. Names on disk are always
/// the real ones. Empty paths: there is none.
class DownloadPaths {
public:
    explicit DownloadPaths(DownloadRecord& download);
    ~DownloadPaths();

    /// The primary partial file. Empty: none was chosen yet.
    [[nodiscard]] const QString& intermediateDownloadTargetPath() const {
        return _intermediateDownloadTargetPath;
    }
    /// Chosen, and made room for, at the first call; then it stays, whatever the name becomes.
    QString chooseIntermediateDownloadTargetPath();
    /// Asks the user, if need be, for access to the folder where the file goes. The main loop may
    /// go on meanwhile, and this be gone at the end. False: access was not given.
    [[nodiscard]] bool unlockDownloadFolder();
    /// Opens the folder of a path that was chosen before, and says in the log if there is no access
    /// to it any more.
    void confirmAccessToPartialData();
    void setIntermediateDownloadTargetPath(const QString& path) {
        _intermediateDownloadTargetPath = path;
    }
    [[nodiscard]] bool hasIntermediateDownloadTargetPath() const {
        return !_intermediateDownloadTargetPath.isEmpty();
    }
    /// Deletes all partial data and forgets where it was, so that the next data is written to a
    /// path, and a container, made anew.
    void discardPartialData();
    /// The same for one that is leaving for good; the deleting is left to the disk.
    void discardPartialDataInBackground();
    /// The same of data elsewhere that it had before; nothing is written down of it any more.
    void discardInBackground(const QString& path) const;

    /// The folder of the primary partial file, if it holds this download and nothing else.
    [[nodiscard]] QString downloadContainerPath() const;
    /// What is kept on disk of the download, in the queue's file and in the container.
    [[nodiscard]] QVariantMap archive(bool paused) const;
    /// Writes it down in the container, if there is one, off the main thread.
    void writeMetadata(const QVariantMap& archive);
    /// The same at once, before there is data that it belongs to.
    void writeFirstMetadata(const QVariantMap& archive) const;
    /// For whoever moves the container's content away, off the main thread. Null: none was written.
    [[nodiscard]] const std::shared_ptr<MetadataFile>& metadata() const { return metadata_; }

    /// Where the finished file goes as names, rules and folders stand now. A path that the user
    /// chose may be taken already; any other is free.
    [[nodiscard]] QString finalDownloadTargetPath();

private:
    struct Folder {
        QString path;
        bool isNew = false;  ///< And thus empty.
    };
    [[nodiscard]] Folder intermediateFolder();
    [[nodiscard]] QString newContainer(const QString& folder);

    /// Empty: no access.
    [[nodiscard]] QString reachedFolder(const QString& folder) const;
    void discard(const QString& path, std::function<void()> remove) const;

    DownloadRecord& download_;
    QString _intermediateDownloadTargetPath;
    std::shared_ptr<MetadataFile> metadata_;
};

}  // namespace engine
