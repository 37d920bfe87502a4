#include "platform/session/login_item.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <cerrno>

#include "platform/base/log.h"
#include "platform/files/files.h"

namespace platform {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 longestEntry = 64 << 10;

/// Quoted for the Exec key, and once more as every string of such a file is; a percent sign would
/// begin a field code.
QString quotedArgument(const QString& argument) {
    QString quoted;
    for (const QChar character : argument) {
        if (u"\"`$\\"_s.contains(character)) {
            quoted += u"\\\\"_s;
        }
        quoted += character == u'\\' ? u"\\\\"_s : QString(character);
        if (character == u'%') {
            quoted += u'%';
        }
    }
    return u'"' + quoted + u'"';
}

/// The value that the entry itself (not one of its actions) has for a key. Empty: none.
QByteArray valueOf(const QByteArray& entry, const QByteArray& key) {
    QByteArray group;
    for (const QByteArray& line : entry.split('\n')) {
        const QByteArray text = line.trimmed();
        const qsizetype equals = text.indexOf('=');
        if (text.startsWith('[')) {
            group = text;
        } else if (group == "[Desktop Entry]" && equals > 0 && text.left(equals).trimmed() == key) {
            return text.mid(equals + 1).trimmed();
        }
    }
    return {};
}

}  // namespace

LoginItem::LoginItem()
    : LoginItem(QFileInfo(userConfigFolder()).path() + u"/autostart/com.tarnworks.Orlop.desktop"_s,
                QCoreApplication::applicationFilePath()) {}

LoginItem::LoginItem(QString entryPath, QString program)
    : entryPath_(std::move(entryPath)), program_(std::move(program)) {}

bool LoginItem::isEnabled() const {
    const FileContents contents = readFile(entryPath_, longestEntry);
    return !contents.error && !valueOf(contents.data, "Exec").isEmpty() &&
           valueOf(contents.data, "Hidden") != "true" &&
           valueOf(contents.data, "X-GNOME-Autostart-enabled") != "false";
}

std::optional<Error> LoginItem::setEnabled(bool enabled) const {
    std::optional<Error> error;
    if (enabled) {
        QDir().mkpath(QFileInfo(entryPath_).path());
        error = writeFileAtomically(entryPath_, entry());
    } else if (pathExists(entryPath_) && !QFile::remove(entryPath_)) {
        error = posixError(errno);
    }
    if (error) {
        log(u"[DQLoginItem] cannot %1 login item: %2"_s.arg(enabled ? u"add"_s : u"remove"_s,
                                                            error->text),
            LogLevel::Error);
    }
    return error;
}

/// The command's name where the user's PATH leads to this very program, so that the entry outlives
/// an update that moves it.
QByteArray LoginItem::entry() const {
    const QString name = QFileInfo(program_).fileName();
    const QString found = QStandardPaths::findExecutable(name);
    const bool isInPath = !found.isEmpty() && QFileInfo(found).canonicalFilePath() ==
                                                  QFileInfo(program_).canonicalFilePath();
    return u"[Desktop Entry]\nType=Application\nName=Orlop\nIcon=com.tarnworks.Orlop\n"
           "Exec=%1\nTerminal=false\nX-GNOME-Autostart-enabled=true\n"_s
               .arg(isInPath ? name : quotedArgument(program_))
               .toUtf8();
}

}  // namespace platform
