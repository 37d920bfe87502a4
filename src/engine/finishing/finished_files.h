#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

namespace engine {

class DownloadRecord;

/// Finds the files of downloads that were finished by a run of the program that was stopped before
/// it could save that. Main thread.
class FinishedFiles {
public:
    /// Empty: there is none, or it cannot be told.
    [[nodiscard]] QString find(const DownloadRecord& download);
    /// The same for one that has partial data too, which is the file's own unless it is marked.
    [[nodiscard]] QString findMarked(const DownloadRecord& download);

private:
    enum class Sign { Mark, MarkOrNumber };
    [[nodiscard]] QString find(const DownloadRecord& download, Sign sign);
    [[nodiscard]] const QHash<QByteArray, QString>& marksIn(const QString& folder);

    /// By the marks of files, for each folder as it was when it was first asked for: what is
    /// finished since then is known without it.
    QHash<QString, QHash<QByteArray, QString>> folders_;
};

/// What tells a download from every other one, of its own address too. It gives nothing away.
[[nodiscard]] QByteArray markOf(const DownloadRecord& download);

}  // namespace engine
