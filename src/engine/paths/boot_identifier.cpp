#include "engine/paths/boot_identifier.h"

#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace engine {

const QByteArray& bootIdentifier() {
    static const QByteArray identifier = [] {
        QFile file(u"/proc/sys/kernel/random/boot_id"_s);
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
    }();
    return identifier;
}

}  // namespace engine
