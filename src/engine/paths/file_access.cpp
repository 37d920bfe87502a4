#include "engine/paths/file_access.h"

#include <QStringList>
#include <utility>

#include "engine/admission/queue_admission.h"
#include "engine/environment.h"
#include "links/paths/sandbox.h"
#include "links/text/localization.h"
#include "platform/base/log.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

/// Keys of the grants opened by downloads; one can stand here several times.
QStringList openBookmarks;

}  // namespace

bool confirmDownloadAccess(const QString& folder) {
    if (folder.isEmpty())
        return false;
    const WriteAccess access = environment().confirmWriteAccess(
        folder, links::localized(
                    "Orlop cannot download files to this folder at the moment. This is most likely "
                    "due to the sandbox blocking access to it. Click \"Unlock\" to ask the sandbox "
                    "for permanent access to the folder."));
    if (access.granted && !access.bookmarkPath.isEmpty())
        openBookmarks.append(access.bookmarkPath);
    return access.granted;
}

void endFileAccess() {
    QueueAdmission& admission = QueueAdmission::shared();
    if (!links::isSandboxed() || openBookmarks.isEmpty() || !admission.queuedDownloads().empty() ||
        !admission.downloadingDownloads().empty())
        return;
    const QStringList closing = std::exchange(openBookmarks, {});
    for (const QString& bookmark : closing)
        environment().stopAccessingBookmark(bookmark);
    platform::debugLog([&] {
        return u"stopped using security-scoped bookmarks: %1"_s.arg(closing.join(u", "_s));
    });
}

}  // namespace engine
