#include <QFile>

#include "desktop/updates/online_sources.h"
#include "platform/session/flatpak.h"

namespace desktop {

using namespace Qt::Literals::StringLiterals;

QString packageManagerOf(const QString& programPath, const QString& systemRoot) {
    if (platform::isInFlatpak(systemRoot)) {
        return u"Flatpak"_s;
    }
    if (!qEnvironmentVariableIsEmpty("SNAP")) {
        return u"Snap"_s;
    }
    // What people install themselves goes elsewhere (FHS 4.9).
    if (!programPath.startsWith(u"/usr/") || programPath.startsWith(u"/usr/local/")) {
        return {};
    }
    if (QFile::exists(systemRoot + u"/var/lib/dpkg/info/orlop.list"_s)) {
        return u"dpkg"_s;
    }
    return QFile::exists(systemRoot + u"/usr/lib/sysimage/rpm"_s) ? u"rpm"_s : QString();
}

}  // namespace desktop
