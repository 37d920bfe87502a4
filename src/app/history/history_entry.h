#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QVariantMap>
#include <optional>

namespace engine {
class DQDownload;
}

namespace app {

/// One download as the history remembers it. A null string or an invalid date is absent.
struct HistoryEntry {
    QString name, originalURL;
    QString path;      ///< With the home folder as a tilde.
    QByteArray alias;  ///< Bookmark of the finished file; a failed download has none.
    QDateTime date;
    /// What its file added up to, as "sha256=9f86..."; empty: nobody has looked.
    QString checksum;
    /// That was compared with what it was to be.
    bool isVerified = false, isWrongFile = false;
    /// What else the file holds for it, to be written again.
    QVariantMap others;

    /// Otherwise it is kept and never shown.
    [[nodiscard]] bool canBeShown() const { return !name.isNull() && !originalURL.isNull(); }
    /// Its file, also if it was moved a little way. Nothing: gone. Touches the disk.
    [[nodiscard]] std::optional<QString> existingPath() const;
};

/// `byDateCompleted`: it bears the date at which the download was done, not that at which it was
/// added.
[[nodiscard]] HistoryEntry historyEntry(engine::DQDownload& download, bool byDateCompleted);

/// Takes over what is known of its file's checksum now.
void noteChecksum(HistoryEntry& entry, const engine::DQDownload& download);

/// One element of the history's file, and back.
[[nodiscard]] HistoryEntry historyEntryFromDictionary(const QVariantMap& dictionary);
[[nodiscard]] QVariantMap historyDictionary(const HistoryEntry& entry);

}  // namespace app
