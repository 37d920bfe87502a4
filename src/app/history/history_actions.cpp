#include "app/history/history_actions.h"

#include "app/main_controller.h"
#include "platform/files/files.h"
#include "platform/net/url.h"

namespace app {

void HistoryActions::beepUnless(bool didWork) const {
    if (!didWork) {
        controller_.surroundings().frontEnd.feedback.beep();
    }
}

const Workspace& HistoryActions::workspace() const {
    return controller_.surroundings().workspace;
}

void HistoryActions::open(const QString& path) const {
    beepUnless(!path.isEmpty() && workspace().openURL(platform::Url::fromFilePath(path)));
}

void HistoryActions::openWithApplication(const QString& path, const QString& identifier) const {
    beepUnless(workspace().openWithApplication(path, identifier));
}

void HistoryActions::reveal(const QString& path) const {
    beepUnless(!path.isEmpty() && workspace().revealFile(path));
}

void HistoryActions::moveToTrash(const QString& path) const {
    if (path.isEmpty()) {
        beepUnless(false);
        return;
    }
    controller_.removeDownloadIfDoneWithPath(path);
    beepUnless(platform::moveToTrash(path));
}

void HistoryActions::copyPath(const QString& path) const {
    copy({{}, path});
}

void HistoryActions::openOriginalURL(const QString& url) const {
    const auto parsed = platform::Url::parse(url);
    beepUnless(parsed && workspace().openURL(*parsed));
}

void HistoryActions::copyOriginalURL(const QString& url) const {
    if (const auto parsed = platform::Url::parse(url)) {
        copy({QStringList{parsed->absoluteString()}, parsed->absoluteString()});
    } else {
        copy({{}, url});
    }
}

void HistoryActions::copy(const Pasteboard& pasteboard) const {
    Clipboard* const clipboard = controller_.surroundings().frontEnd.clipboard;
    beepUnless(clipboard != nullptr);
    if (clipboard) {
        clipboard->copy(pasteboard);
    }
}

void HistoryActions::download(const QString& url) const {
    const auto parsed = platform::Url::parse(url);
    if (!parsed || parsed->isEmpty()) {
        beepUnless(false);
        return;
    }
    controller_.openNewURLs({*parsed});
}

}  // namespace app
