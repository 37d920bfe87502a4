#include "platform/session/flatpak.h"

#include <QFile>

namespace platform {

bool isInFlatpak(const QString& systemRoot) {
    return QFile::exists(systemRoot + QStringLiteral("/.flatpak-info"));
}

}  // namespace platform
