#include "platform/session/bundled_gio.h"

#include <QFile>
#include <QFileInfo>

namespace platform {

using namespace Qt::Literals::StringLiterals;

namespace {

QByteArrayList& variables() {
    static QByteArrayList names;
    return names;
}

}  // namespace

QByteArrayList nameBundledGio(const QString& folder) {
    struct Place {
        const char* variable;
        QString path;
    };
    QByteArrayList named;
    for (const Place& place : {Place{"GIO_LAUNCH_DESKTOP", folder + u"/gio-launch-desktop"_s},
                               Place{"GIO_MODULE_DIR", folder + u"/modules"_s}}) {
        if (!qEnvironmentVariableIsSet(place.variable) && QFileInfo::exists(place.path)) {
            qputenv(place.variable, QFile::encodeName(place.path));
            named.append(place.variable);
        }
    }
    return named;
}

void useBundledGio() {
    const QString program = QFile::symLinkTarget(u"/proc/self/exe"_s);
    const QString root = QFileInfo(QFileInfo(program).path()).path();
    variables() = nameBundledGio(root + u"/lib/bundled-gio"_s);
}

const QByteArrayList& variablesOfBundledGio() {
    return variables();
}

}  // namespace platform
