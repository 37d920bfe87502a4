#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

namespace platform {
class UserDefaults;
}

namespace app {

class DQMainController;

/// One file of a report, as the user sees it and as it is sent.
struct ReportFile {
    QString name;
    QByteArray contents;
};

/// What helps to find out about a problem: versions and surroundings, the settings without
/// anything secret, and the last hour of the log in `logFolder`, its latest 4 MiB at most. With
/// Private Downloading on, addresses, names and personal folders are replaced. Main thread.
[[nodiscard]] std::vector<ReportFile> problemReport(const DQMainController& controller,
                                                    const platform::UserDefaults& defaults,
                                                    const QString& logFolder);

/// The files in one folder of a compressed tape archive (POSIX.1-1988 ustar in RFC 1952 gzip).
/// Names are plain file names of at most 60 bytes in ASCII. Empty: it cannot be made.
[[nodiscard]] QByteArray reportArchive(const std::vector<ReportFile>& files,
                                       qint64 secondsSince1970);

}  // namespace app
