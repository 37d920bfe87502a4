#include "platform/net/default_route.h"

#include <QFile>
#include <QString>

namespace platform {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 longestTable = 1 << 20;

QList<QByteArray> linesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(longestTable).split('\n')
                                          : QList<QByteArray>();
}

/// A route outlives the connection for a moment.
bool isUp(const QByteArray& interface) {
    QFile file(u"/sys/class/net/%1/operstate"_s.arg(QString::fromLatin1(interface)));
    return interface != "lo" &&
           (!file.open(QIODevice::ReadOnly) || file.read(32).trimmed() != "down");
}

}  // namespace

bool hasDefaultRoute() {
    constexpr qsizetype ipv6Fields = 10;
    for (const QByteArray& line : linesOf(u"/proc/net/route"_s)) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() > 7 && fields[1] == "00000000" && fields[7] == "00000000" &&
            isUp(fields[0])) {
            return true;
        }
    }
    for (const QByteArray& line : linesOf(u"/proc/net/ipv6_route"_s)) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() == ipv6Fields && fields[0] == QByteArray(32, '0') && fields[1] == "00" &&
            isUp(fields[9])) {
            return true;
        }
    }
    return false;
}

}  // namespace platform
