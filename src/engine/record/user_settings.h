#pragma once

#include <QString>
#include <QVariant>
#include <utility>
#include <vector>

namespace engine {

/// What a download must remember over a restart: string keys with property-list values.
///
/// Absent and invalid are the same; storing an invalid value removes the key.
class UserSettings {
public:
    [[nodiscard]] bool contains(const QString& key) const { return find(key) != nullptr; }
    [[nodiscard]] QVariant value(const QString& key) const {
        const QVariant* found = find(key);
        return found ? *found : QVariant();
    }
    [[nodiscard]] QString string(const QString& key) const { return value(key).toString(); }
    [[nodiscard]] bool boolean(const QString& key) const { return value(key).toBool(); }

    void set(const QString& key, const QVariant& newValue);
    void remove(const QString& key);

    /// Something else that the archive holds is another one now.
    void noteChangeBeside() { didChange(); }

    /// A number that no other content of any settings has had, so that what was made from them
    /// can be kept while it stays the same.
    [[nodiscard]] quint64 revision() const { return revision_; }

    /// The dictionary that is kept on disk, without what depends on where the partial file lies.
    [[nodiscard]] QVariantMap archive(const QString& urlString, bool paused) const;
    /// Takes over what an archive holds of the kept keys; all else stays as it is.
    void restore(const QVariantMap& archive);

private:
    /// Null: there is none.
    [[nodiscard]] QVariant* find(const QString& key);
    [[nodiscard]] const QVariant* find(const QString& key) const;
    void didChange();

    /// Few for each of very many downloads, and so no map.
    std::vector<std::pair<QString, QVariant>> values_;
    quint64 revision_ = 0;
};

/// The keys of UserSettings.
namespace keys {

inline const QString accelerationFailed = QStringLiteral("Acceleration Failed");
/// A list of dictionaries with the `worker...` keys, in order of offset, without the first worker.
inline const QString accelerationWorkers = QStringLiteral("Acceleration Workers");
inline const QString workerTarget = QStringLiteral("Target");
inline const QString workerStart = QStringLiteral("Start");
inline const QString workerEnd = QStringLiteral("End");
/// The bookmark of the finished file.
inline const QString alias = QStringLiteral("Alias");
/// When the download was added, as archived data.
inline const QString date = QStringLiteral("Date");
/// When it was done, as archived data.
inline const QString done = QStringLiteral("Done");
/// The file or folder that the user chose for this download; a tilde is allowed.
inline const QString downloadFile = QStringLiteral("Download File");
inline const QString downloadFolder = QStringLiteral("Download Folder");
inline const QString name = QStringLiteral("Name");
/// The name was given by whoever added the download, and what servers suggest is none of it.
inline const QString keepsName = QStringLiteral("Keeps Name");
/// Stands for the download towards scripts, over restarts and retries.
inline const QString identity = QStringLiteral("Identity");
/// Of the hand-over of a browser that made the download, and the page that it came from.
inline const QString handOver = QStringLiteral("Hand-Over");
inline const QString page = QStringLiteral("Page");
/// The server said that it serves no ranges.
inline const QString rangesDisabled = QStringLiteral("Ranges Disabled");
inline const QString referer = QStringLiteral("Referer");
/// The download pages on the way to this download, the first of them first.
inline const QString downloadPageChain = QStringLiteral("Download Page Chain");
/// A whole captured request, with the `request...` keys.
inline const QString request = QStringLiteral("Request");
inline const QString requestMethod = QStringLiteral("DQOBPRequestMethod");
inline const QString requestAllHeaders = QStringLiteral("DQOBPRequestAllHeaderFieds");
inline const QString requestPartialHeaders = QStringLiteral("DQOBPRequestPartialHeaderFieds");
inline const QString requestBody = QStringLiteral("DQOBPRequestBody");
/// The address that answered last. That it is present says that the download has begun and may
/// have partial data.
inline const QString responseURL = QStringLiteral("Response URL");
inline const QString statusCode = QStringLiteral("Status Code");

/// What the server said the file is, so that a resume can tell a changed file: the whole length in
/// bytes, and the validators of RFC 9110, 8.8.
inline const QString expectedBytes = QStringLiteral("Expected Bytes");
inline const QString entityTag = QStringLiteral("Entity Tag");
inline const QString lastModified = QStringLiteral("Last Modified");
inline const QString isLastModifiedWeak = QStringLiteral("Last Modified Is Weak");
inline const QString contentType = QStringLiteral("Content Type");
inline const QString contentEncoding = QStringLiteral("Content Encoding");
/// The inode of the partial file, which keeps it when it is moved within its disk.
inline const QString partialFileNumber = QStringLiteral("Partial File Number");
/// Bytes of the file that had come when the download last stopped; absent: none, or it runs.
inline const QString keptBytes = QStringLiteral("Kept Bytes");
/// The finished file could not be put where it was to go, and lies elsewhere.
inline const QString leftBehind = QStringLiteral("Left Behind");
/// Partial data that is in doubt while new data comes: "Resume Path" and what else belongs to it.
inline const QString keptAside = QStringLiteral("Kept Aside");

/// Bytes per second that the download takes at most; absent: as many as come.
inline const QString speedLimit = QStringLiteral("Speed Limit");

/// What went wrong so far and when it was tried again, the oldest first: dictionaries with a date
/// and a text for the user.
inline const QString attempts = QStringLiteral("Attempts");
inline const QString attemptDate = QStringLiteral("Date");
inline const QString attemptText = QStringLiteral("Text");

/// What the file is to add up to, in the form of Checksum::text: as the user knows it, and as the
/// server said of the bytes that it sent.
inline const QString checksum = QStringLiteral("Checksum");
inline const QString serverChecksum = QStringLiteral("Server Checksum");
/// What came out when that was looked at; see ChecksumResult.
inline const QString checksumResult = QStringLiteral("Checksum Result");
inline const QString computedChecksum = QStringLiteral("Computed Checksum");

/// Not kept on disk: cookies of a private window, in the form of the header.
inline const QString unkeptCookies = QStringLiteral("Unkept Cookies");
/// Not kept on disk: the address as it stood at the first start.
inline const QString originalURL = QStringLiteral("Original URL");
/// Of the page that led to the file, which may give it its name.
inline const QString downloadPageTitle = QStringLiteral("Download Page Title");

/// Keys of the archive that are no settings.
inline const QString url = QStringLiteral("URL");
inline const QString paused = QStringLiteral("Paused");
inline const QString resumePath = QStringLiteral("Resume Path");
/// Why it is at a stand; see PastFailure.
inline const QString failure = QStringLiteral("Failure");
/// Its row is gone, from this place in the queue, and its data is still there to be wanted back.
inline const QString removedFrom = QStringLiteral("Removed From");

}  // namespace keys

}  // namespace engine
