#include "links/paths/folders.h"

#include <sys/stat.h>
#include <unicode/locid.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <algorithm>
#include <filesystem>

#include "links/names/file_names.h"
#include "links/paths/path_components.h"
#include "links/paths/sandbox.h"
#include "links/text/icu_text.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

namespace fs = std::filesystem;

QStringList entriesOf(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                  QDir::NoDotAndDotDot);
}

QString inSandboxWithoutLinks(const QString& path) {
    if (!isSandboxed())
        return path;
    const QString resolved = QFileInfo(path).canonicalFilePath();
    return resolved.isEmpty() ? path : resolved;
}

std::optional<QString> ifExists(const QString& path) {
    return !path.isEmpty() && QFileInfo::exists(path) ? std::optional(path) : std::nullopt;
}

quint64 sizeOfFilesBelow(const fs::path& folder) {
    quint64 total = 0;
    std::error_code failure;
    fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied,
                                           failure);
    for (; !failure && entry != fs::recursive_directory_iterator(); entry.increment(failure)) {
        std::error_code unreadable;
        if (!entry->is_symlink(unreadable) && entry->is_regular_file(unreadable)) {
            const auto size = entry->file_size(unreadable);
            total += unreadable ? 0 : size;
        }
    }
    return total;
}

QString englishNameOfLanguage(const QString& language) {
    UErrorCode failure = U_ZERO_ERROR;
    const auto locale = icu::Locale::forLanguageTag(language.toStdString(), failure);
    icu::UnicodeString name;
    if (U_SUCCESS(failure))
        locale.getDisplayName(icu::Locale::getEnglish(), name);
    return fromICU(name);
}

/// Folder names in order of preference; the last, an empty one, is the folder itself.
QStringList makeLocalizedFolders() {
    const QString suffix = u".lproj"_s;
    QStringList folders;
    for (const QString& language : QLocale::system().uiLanguages()) {
        folders.append(language + suffix);
        if (const QString name = englishNameOfLanguage(language); !name.isEmpty())
            folders.append(name + suffix);
    }
    folders << u"en.lproj"_s << u"English.lproj"_s;
    folders.removeDuplicates();
    return folders << QString();
}

}  // namespace

bool isFolderPath(const QString& path) {
    struct stat status {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool checkFolderPathAndCreateIfNecessary(const QString& path) {
    const QString expanded = platform::expandTilde(path);
    if (isFolderPath(expanded))
        return true;
    return !expanded.isEmpty() && platform::pathExists(volumePath(expanded)) &&
           QDir().mkpath(expanded);
}

bool removeFolderIfVirtuallyEmpty(const QString& path) {
    if (!isFolderPath(path))
        return false;
    const QStringList entries = entriesOf(path);
    if (!std::all_of(entries.begin(), entries.end(), isNegligibleFilename))
        return false;
    if (QFileInfo(path).isSymLink())
        return QFile::remove(path);
    // Entry by entry: a file that comes in at this moment keeps the folder from going.
    for (const QString& entry : entries) {
        std::error_code ignored;
        fs::remove_all(QFile::encodeName(stringByAppendingPathComponent(path, entry)).toStdString(),
                       ignored);
    }
    return ::rmdir(QFile::encodeName(path).constData()) == 0;
}

std::optional<QString> existingPathWithFallBackAliasData(const QString& path,
                                                         const QByteArray& bookmark) {
    if (const auto found = ifExists(inSandboxWithoutLinks(platform::expandTilde(path))))
        return found;
    if (bookmark.isEmpty())
        return std::nullopt;
    return ifExists(inSandboxWithoutLinks(platform::resolveFileBookmark(bookmark)));
}

std::optional<quint64> totalFileSizeAtPath(const QString& path) {
    const QFileInfo info(path);
    if (path.isEmpty() || !info.exists())
        return std::nullopt;
    return info.isDir() ? sizeOfFilesBelow(QFile::encodeName(path).toStdString())
                        : static_cast<quint64>(info.size());
}

std::optional<QString> localizedPathToDirectory(const QString& name, const QString& directory) {
    if (name.isEmpty() || directory.isEmpty() || !isFolderPath(directory))
        return std::nullopt;
    static const QStringList localizedFolders = makeLocalizedFolders();
    for (const QString& folder : localizedFolders) {
        const QString candidate =
            stringByAppendingPathComponent(stringByAppendingPathComponent(directory, folder), name);
        if (isFolderPath(candidate))
            return candidate;
    }
    return std::nullopt;
}

}  // namespace links
