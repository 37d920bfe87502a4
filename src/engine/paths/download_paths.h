#pragma once

#include <QString>
#include <QVariantMap>

namespace engine {

class DQDownload;

/// Where the data of one download grows and where the finished file goes. Names on disk are always
/// the real ones. Empty paths: there is none.
class DownloadPaths {
public:
    explicit DownloadPaths(DQDownload& download) : download_(download) {}

    /// The primary partial file. Chosen, and made room for, at the first call with
    /// `createIfNecessary`; then it stays, whatever the name becomes.
    [[nodiscard]] QString intermediateDownloadTargetPath(bool createIfNecessary,
                                                         bool confirmAccess);
    void setIntermediateDownloadTargetPath(const QString& path) {
        _intermediateDownloadTargetPath = path;
    }
    [[nodiscard]] bool hasIntermediateDownloadTargetPath() const {
        return !_intermediateDownloadTargetPath.isEmpty();
    }
    /// Deletes all partial data and forgets where it was, so that the next data is written to a
    /// path, and a container, made anew.
    void discardPartialData();

    /// The folder of the primary partial file, if it holds this download and nothing else.
    [[nodiscard]] QString downloadContainerPath() const;
    /// Writes down in the container, if there is one, what belongs to its download; not once more
    /// what it says already.
    void writeMetadata(const QVariantMap& archive);

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

    DQDownload& download_;
    QString _intermediateDownloadTargetPath;
    QVariantMap writtenMetadata_;
};

}  // namespace engine
