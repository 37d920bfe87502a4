#include "engine/paths/file_access.h"

#include <utility>

#include "engine/environment.h"
#include "links/text/localization.h"
#include "platform/base/log.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {

QString FileAccess::confirmDownloadAccess(const QString& folder, Asking asking) {
    if (folder.isEmpty())
        return {};
    const QString explanation =
        asking == Asking::No
            ? QString()
            : links::localized(
                  "Orlop cannot download files to this folder at the moment. This is most likely "
                  "due to the sandbox blocking access to it. Click \"Unlock\" to ask the sandbox "
                  "for permanent access to the folder.");
    const WriteAccess access = environment_.confirmWriteAccess(folder, explanation);
    if (!access.granted)
        return {};
    if (!access.bookmarkPath.isEmpty())
        openBookmarks_.append(access.bookmarkPath);
    return access.reachedFolder.isEmpty() ? folder : access.reachedFolder;
}

void FileAccess::end() {
    if (openBookmarks_.isEmpty())
        return;
    const QStringList closing = std::exchange(openBookmarks_, {});
    for (const QString& bookmark : closing)
        environment_.stopAccessingBookmark(bookmark);
    platform::debugLog([&] {
        return u"stopped using security-scoped bookmarks: %1"_s.arg(closing.join(u", "_s));
    });
}

}  // namespace engine
