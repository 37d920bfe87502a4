#include "engine/workers/partial_file_marks.h"

#include <sys/xattr.h>
#include <unistd.h>
#include <QFile>

#include <algorithm>

#include "engine/paths/boot_identifier.h"
#include "links/paths/file_attributes.h"
#include "platform/base/log.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

/// "BOOT BYTES": the boot in which the mark was made, and the bytes known to be on the disk.
constexpr char syncedAttribute[] = "user.orlop.synced";
constexpr char finishingAttribute[] = "user.orlop.finishing";

QByteArray syncedMark(qint64 bytes) {
    return bootIdentifier() + ' ' + QByteArray::number(bytes);
}

void setSyncedMark(int file, qint64 bytes, int flags) {
    const QByteArray mark = syncedMark(bytes);
    fsetxattr(file, syncedAttribute, mark.constData(), static_cast<std::size_t>(mark.size()),
              flags);
}

void setFlag(const QString& path, const char* attribute) {
    static_cast<void>(platform::setExtendedAttribute(path, QString::fromLatin1(attribute),
                                                     QByteArrayLiteral("1")));
}

bool hasFlag(const QString& path, const char* attribute) {
    return platform::extendedAttribute(path, QString::fromLatin1(attribute)).has_value();
}

}  // namespace

void markUnsynced(int file) {
    setSyncedMark(file, 0, XATTR_CREATE);
}

void markSynced(int file, qint64 bytes) {
    setSyncedMark(file, bytes, XATTR_REPLACE);
}

void leaveToJournals(int file) {
    fremovexattr(file, syncedAttribute);
}

void dropUnsyncedTail(const QString& path) {
    const auto mark = platform::extendedAttribute(path, QString::fromLatin1(syncedAttribute));
    const auto size = platform::fileSize(path);
    if (!mark || !size)
        return;
    const qsizetype blank = mark->indexOf(' ');
    bool isNumber = false;
    const qint64 synced = mark->mid(blank + 1).toLongLong(&isNumber);
    if (blank < 0 || !isNumber || synced < 0 || mark->first(blank) == bootIdentifier())
        return;
    if (*size > synced) {
        platform::log(
            u"dropping what was not yet on the disk when the machine went down: %1 "
            u"(%2 of %3 bytes)"_s.arg(path, QString::number(*size - synced),
                                      QString::number(*size)));
        if (truncate(QFile::encodeName(path).constData(), synced) != 0)
            return;
    }
    static_cast<void>(platform::setExtendedAttribute(path, QString::fromLatin1(syncedAttribute),
                                                     syncedMark(std::min(*size, synced))));
}

void markFinishing(const QString& path) {
    setFlag(path, finishingAttribute);
}

bool isMarkedFinishing(const QString& path) {
    return hasFlag(path, finishingAttribute);
}

void removePartialFileMarks(const QString& path) {
    const QByteArray file = QFile::encodeName(path);
    for (const char* name : {syncedAttribute, finishingAttribute})
        lremovexattr(file.constData(), name);
}

}  // namespace engine
