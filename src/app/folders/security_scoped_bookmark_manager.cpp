#include "app/folders/security_scoped_bookmark_manager.h"

#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <utility>

#include "app/front_end.h"
#include "app/settings.h"
#include "links/paths/folders.h"
#include "links/paths/sandbox.h"
#include "links/text/localization.h"
#include "platform/base/log.h"
#include "platform/files/document_portal.h"
#include "platform/files/files.h"
#include "platform/net/url.h"

using namespace Qt::Literals::StringLiterals;

namespace app {
namespace {

bool covers(const QString& key, const QString& path) {
    return key == path || path.startsWith(key == u"/"_s ? key : key + u'/');
}

/// `path` below `key` as it is reached through `reached`.
QString movedPath(const QString& path, const QString& key, const QString& reached) {
    return QDir::cleanPath(reached + u'/' + path.mid(key == u"/"_s ? 0 : key.size()));
}

DQSecurityScopedBookmarkManager* installedManager = nullptr;

QString described(const QString& path) {
    return platform::Url::fromFilePath(path).absoluteString();
}

}  // namespace

SandboxView SandboxView::ofThisProcess() {
    return {links::isSandboxed(),
            [](const QString& path, int mode) {
                return ::access(QFile::encodeName(path).constData(), mode) == 0 &&
                       !platform::isOfSandboxAlone(path);
            },
            platform::hostPathOfDocument};
}

DQSecurityScopedBookmarkManager::DQSecurityScopedBookmarkManager(platform::UserDefaults& defaults,
                                                                 const platform::Clock& clock,
                                                                 Questions& questions,
                                                                 SandboxView sandbox)
    : defaults_(defaults), clock_(clock), questions_(questions), sandbox_(std::move(sandbox)) {}

QMap<QString, QString> DQSecurityScopedBookmarkManager::bookmarks() const {
    QMap<QString, QString> bookmarks;
    const QVariantMap stored = defaults_.get(settings::securityScopedBookmarks);
    for (auto bookmark = stored.cbegin(); bookmark != stored.cend(); ++bookmark) {
        const QString reached = QString::fromUtf8(bookmark.value().toByteArray());
        if (bookmark.key().startsWith(u'/') && reached.startsWith(u'/'))
            bookmarks.insert(bookmark.key(), reached);
    }
    return bookmarks;
}

DQSecurityScopedBookmarkManager::Access DQSecurityScopedBookmarkManager::confirmReadAccess(
    const QString& path, Panel panel) {
    return confirmAccess(R_OK, path, panel, {});
}

DQSecurityScopedBookmarkManager::Access DQSecurityScopedBookmarkManager::confirmWriteAccess(
    const QString& folder, Panel panel, const QString& explanation) {
    return confirmAccess(W_OK, folder, panel, explanation);
}

DQSecurityScopedBookmarkManager::Access DQSecurityScopedBookmarkManager::confirmAccess(
    int mode, const QString& path, Panel panel, const QString& explanation) {
    const QString asked = platform::resolvedPath(path);
    if (asked.isEmpty())
        return {};
    if (sandbox_.canAccess(asked, mode))
        return {true, {}, path};
    if (!sandbox_.isSandboxed)
        return {};
    if (const std::optional<Access> access = throughBookmark(asked, mode))
        return *access;
    return panel == Panel::Shown ? askFor(asked, mode, explanation) : Access();
}

std::optional<DQSecurityScopedBookmarkManager::Access>
DQSecurityScopedBookmarkManager::throughBookmark(const QString& path, int mode) {
    const auto bookmarks = this->bookmarks();
    for (auto bookmark = bookmarks.cbegin(); bookmark != bookmarks.cend(); ++bookmark) {
        if (!covers(bookmark.key(), path) || !sandbox_.canAccess(bookmark.value(), mode))
            continue;
        const QString reached = movedPath(path, bookmark.key(), bookmark.value());
        if (mode == W_OK && !links::checkFolderPathAndCreateIfNecessary(reached))
            continue;
        if (!sandbox_.canAccess(reached, mode))
            continue;
        accessed_.insert(bookmark.key());
        platform::debugLog([&] {
            return u"[Security-Scoped Bookmark Manager] using bookmark for path: %1 (requested "
                   "path: %2)"_s.arg(bookmark.key(), path);
        });
        return Access{true, bookmark.key(), reached};
    }
    return std::nullopt;
}

DQSecurityScopedBookmarkManager::Access DQSecurityScopedBookmarkManager::askFor(
    const QString& folder, int mode, const QString& explanation) {
    constexpr platform::Seconds refusalHolds = 2;
    if (refusal_ && refusal_->folder == folder && clock_.monotonic() - refusal_->at < refusalHolds)
        return {};
    const std::optional<QString> chosen = questions_.unlockFolder(folder, explanation);
    if (!chosen) {
        refusal_ = {folder, clock_.monotonic()};
        return {};
    }
    if (sandbox_.canAccess(folder, mode))
        return {createBookmark(*chosen), {}, folder};
    // A portal that does not say what it gave is taken at its word: the panel began at the folder.
    QString host = sandbox_.hostPath(*chosen);
    if (host.isEmpty() && QFileInfo(*chosen).fileName() == QFileInfo(folder).fileName())
        host = folder;
    if (!host.isEmpty() && covers(host, folder)) {
        if (createBookmark(*chosen, host)) {
            if (const std::optional<Access> access = throughBookmark(folder, mode))
                return *access;
        }
    }
    platform::log(
        u"[Security-Scoped Bookmark Manager] confused by useless bookmark for URL: %1 (requested URL: %2)"_s
            .arg(described(*chosen), described(folder)));
    return {};
}

bool DQSecurityScopedBookmarkManager::createBookmark(const QString& chosen) {
    const QString host = sandbox_.hostPath(chosen);
    return createBookmark(chosen, host.isEmpty() ? platform::resolvedPath(chosen) : host);
}

QString DQSecurityScopedBookmarkManager::keepChosenFolder(const QString& chosen) {
    const QString host = sandbox_.isSandboxed ? sandbox_.hostPath(chosen) : QString();
    if (sandbox_.isSandboxed && !createBookmark(chosen))
        return chosen;
    return host.isEmpty() ? chosen : host;
}

bool DQSecurityScopedBookmarkManager::createBookmark(const QString& chosen, const QString& path) {
    if (path.isEmpty()) {
        platform::log(u"[Security-Scoped Bookmark Manager] cannot determine path for URL: %1"_s.arg(
            described(chosen)));
        return false;
    }
    QVariantMap stored = defaults_.get(settings::securityScopedBookmarks);
    const auto bookmarks = this->bookmarks();
    for (auto bookmark = bookmarks.cbegin(); bookmark != bookmarks.cend(); ++bookmark) {
        if (covers(bookmark.key(), path) && sandbox_.canAccess(bookmark.value(), F_OK)) {
            platform::debugLog([&] {
                return u"[Security-Scoped Bookmark Manager] ignoring redundant request for "
                       "bookmark with URL: %1 (existing bookmark covers URL: %2)"_s.arg(
                           described(chosen), described(bookmark.key()));
            });
            return true;
        }
        if (bookmark.key() != path && covers(path, bookmark.key()))
            stored.remove(bookmark.key());
    }
    stored.insert(path, chosen.toUtf8());
    defaults_.set(settings::securityScopedBookmarks, stored);
    platform::debugLog([&] {
        return u"[Security-Scoped Bookmark Manager] created bookmark for URL: %1"_s.arg(
            described(chosen));
    });
    return true;
}

void DQSecurityScopedBookmarkManager::stopAccessingBookmark(const QString& path) {
    accessed_.remove(path);
}

void installBookmarkManager(DQSecurityScopedBookmarkManager* manager) {
    installedManager = manager;
}

DQSecurityScopedBookmarkManager* bookmarkManager() {
    return installedManager;
}

}  // namespace app
