#include "engine/finishing/finished_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <QFile>
#include <QVariant>
#include <array>

#include "engine/context.h"
#include "engine/environment.h"
#include "engine/finishing/finished_files.h"
#include "engine/finishing/verification.h"
#include "engine/record/download_record.h"
#include "engine/rules.h"
#include "engine/settings.h"
#include "links/paths/file_attributes.h"
#include "links/settings.h"
#include "platform/base/log.h"
#include "platform/base/user_defaults.h"
#include "platform/files/descriptor.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {

namespace {

/// The setting's lowest value that counts gives the date to the file's creation alone, which no
/// file system of Linux lets anybody set.
std::array<timespec, 2> timesFor(const QDateTime& modificationDate) {
    std::array<timespec, 2> times{};
    times[0].tv_nsec = UTIME_OMIT;
    times[1].tv_sec = modificationDate.toSecsSinceEpoch();
    return times;
}

/// `File`: a path or a descriptor.
template <typename File>
void writeMark(const FileOrigin& origin, const File& file) {
    static_cast<void>(platform::setExtendedAttribute(
        file, QString::fromUtf16(links::attributes::downloadMark), origin.mark));
}

}  // namespace

bool FileOrigin::isKnownTo(const QString& path) const {
    return platform::extendedAttribute(path, QString::fromUtf16(links::attributes::downloadMark)) ==
           mark;
}

FileOrigin originOf(const DownloadRecord& download) {
    FileOrigin origin;
    origin.mark = markOf(download);
    origin.sourcesAreComment =
        download.context().defaults.get(links::settings::storeSourceURLInSpotlightComment);
    if (download.context().defaults.get(settings::lastModifiedHeaderAdoption) > 0)
        origin.modificationDate = download.dates().lastModifiedOnServerDate();
    const bool storesQueries =
        download.context().defaults.get(links::settings::storeQueriesOfSourceURLs);
    for (const QString& key : {keys::responseURL, keys::originalURL}) {
        const QString address = download.userSettings().string(key);
        origin.sources.append(storesQueries ? address : address.section(u'?', 0, 0));
    }
    origin.sources.removeAll({});
    origin.sources.removeDuplicates();
    return origin;
}

void writeOrigin(const FileOrigin& origin, const QString& path) {
    if (origin.modificationDate &&
        utimensat(AT_FDCWD, QFile::encodeName(path).constData(),
                  timesFor(*origin.modificationDate).data(), AT_SYMLINK_NOFOLLOW) != 0)
        platform::log(u"cannot set modification date for <%1>"_s.arg(path));
    links::setSourceURLStrings(path, origin.sources, origin.sourcesAreComment);
    writeMark(origin, path);
    if (origin.checksum)
        writeChecksum(*origin.checksum, path);
}

void writeOrigin(const FileOrigin& origin, const platform::Descriptor& file, const QString& path) {
    if (origin.modificationDate &&
        futimens(file.get(), timesFor(*origin.modificationDate).data()) != 0)
        platform::log(u"cannot set modification date for <%1>"_s.arg(path));
    links::setSourceURLStrings(file, origin.sources, origin.sourcesAreComment);
    writeMark(origin, file);
}

void openByRule(const DownloadRecord& download, const QString& path) {
    const QVariantList rules = download.context().rules.specialCases();
    for (const QVariant& element : rules) {
        const QVariantMap rule = element.toMap();
        if (download.matchesSpecialCase(rule) && download.context().environment.openWithApplication(
                                                     path, rule.value(u"Application"_s).toString()))
            return;
    }
}

}  // namespace engine
