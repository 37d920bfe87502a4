#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace browser {

/// What was done for `--install` and `--uninstall`, for people, a line each.
struct InstallReport {
    /// `title`: for whom the file is.
    void write(const QString& title, const QString& path, const QByteArray& contents);
    /// Nothing to tell where it is not there.
    void remove(const QString& title, const QString& path);
    void fail(const QString& line);

    QStringList lines;
    bool hasFailed = false;
};

}  // namespace browser
