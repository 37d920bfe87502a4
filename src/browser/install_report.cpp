#include "browser/install_report.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "platform/files/files.h"

namespace browser {

using namespace Qt::Literals::StringLiterals;

void InstallReport::write(const QString& title, const QString& path, const QByteArray& contents) {
    QDir().mkpath(QFileInfo(path).path());
    if (const auto error = platform::writeFileAtomically(path, contents))
        fail(u"%1: %2 could not be written: %3"_s.arg(title, path, error->text));
    else
        lines.append(u"%1: %2"_s.arg(title, path));
}

void InstallReport::remove(const QString& title, const QString& path) {
    if (!platform::pathExists(path))
        return;
    if (QFile::remove(path))
        lines.append(u"%1: %2 removed"_s.arg(title, path));
    else
        fail(u"%1: %2 could not be removed"_s.arg(title, path));
}

void InstallReport::fail(const QString& line) {
    lines.append(line);
    hasFailed = true;
}

}  // namespace browser
