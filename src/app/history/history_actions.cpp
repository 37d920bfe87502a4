#include "app/history/history_actions.h"

#include "app/main_controller.h"
#include "engine/environment.h"
#include "platform/files/files.h"
#include "platform/net/url.h"

namespace app {

namespace {

void beepUnless(bool didWork) {
    if (!didWork) {
        engine::environment().beep();
    }
}

}  // namespace

void HistoryActions::open(const QString& path) const {
    beepUnless(!path.isEmpty() && engine::environment().openURL(platform::Url::fromFilePath(path)));
}

void HistoryActions::openWithApplication(const QString& path, const QString& identifier) const {
    beepUnless(engine::environment().openWithApplication(path, identifier));
}

void HistoryActions::reveal(const QString& path) const {
    beepUnless(!path.isEmpty() && engine::environment().revealFile(path));
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
    engine::environment().copyText(path);
}

void HistoryActions::openOriginalURL(const QString& url) const {
    const auto parsed = platform::Url::parse(url);
    beepUnless(parsed && engine::environment().openURL(*parsed));
}

void HistoryActions::copyOriginalURL(const QString& url) const {
    if (const auto parsed = platform::Url::parse(url)) {
        engine::environment().copyURL(*parsed);
    } else {
        engine::environment().copyText(url);
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
