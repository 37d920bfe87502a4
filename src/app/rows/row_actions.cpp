#include "app/rows/row_actions.h"

#include "app/rows/file_presence.h"
#include "engine/record/user_settings.h"
#include "engine/settings.h"
#include "platform/base/user_defaults.h"

namespace app {

namespace {

std::optional<platform::Url> originalURL(const engine::DQDownload& download) {
    const auto url = platform::Url::parse(download.originalURLString());
    return url && !url->isEmpty() ? url : std::nullopt;
}

}  // namespace

PrimaryAction primaryAction(const engine::DQDownload& download) {
    switch (download.status()) {
        case engine::DQDownloadStatusDone:
            return PrimaryAction::Reveal;
        case engine::DQDownloadStatusAborted:
            return PrimaryAction::TryAgain;
        case engine::DQDownloadStatusPaused:
            return download.isInterrupted() ? PrimaryAction::TryAgain : PrimaryAction::Start;
        case engine::DQDownloadStatusQueued:
        case engine::DQDownloadStatusDownloading:
            break;
    }
    return PrimaryAction::Pause;
}

bool RowActions::canPerform(engine::DQDownload& download, unsigned index) const {
    if (index == engine::DQDownloadActionPrimary) {
        return download.status() != engine::DQDownloadStatusDone ||
               surroundings_.presence.isThere(download);
    }
    return index == engine::DQDownloadActionRemove;
}

void RowActions::perform(engine::DQDownload& download, unsigned index) const {
    if (index == engine::DQDownloadActionRemove) {
        download.withdraw();
    } else if (index == engine::DQDownloadActionPrimary) {
        performPrimary(download);
    }
}

void RowActions::performPrimary(engine::DQDownload& download) const {
    switch (download.status()) {
        case engine::DQDownloadStatusPaused:
        case engine::DQDownloadStatusQueued:
            if (isAlternateFunctionalityEvent()) {
                download.startDownload();
            } else {
                download.togglePause();
            }
            return;
        case engine::DQDownloadStatusDownloading:
            download.togglePause();
            return;
        case engine::DQDownloadStatusDone:
            if (surroundings_.defaults.get(engine::settings::revealByLaunching)) {
                open(download);
            } else {
                reveal(download);
            }
            return;
        case engine::DQDownloadStatusAborted:
            surroundings_.retry(download);
            return;
    }
}

bool RowActions::isAlternateFunctionalityEvent() const {
    return surroundings_.frontEnd.presence.areAlternateFunctionalityModifiersHeld();
}

void RowActions::open(engine::DQDownload& download) const {
    const bool isOpened = download.status() == engine::DQDownloadStatusDone &&
                          download.fileExists() && surroundings_.workspace.openURL(download.URL());
    if (!isOpened) {
        reveal(download);
    }
}

void RowActions::reveal(engine::DQDownload& download) const {
    const QString path = download.pathToReveal();
    if (path.isEmpty() || !surroundings_.workspace.revealFile(path)) {
        surroundings_.frontEnd.feedback.beep();
    }
}

void RowActions::openPage(const engine::DQDownload& download) const {
    const auto page = platform::Url::parse(download.userSettings().string(engine::keys::page));
    const bool isWeb = page && (page->hasScheme("http") || page->hasScheme("https"));
    if (!isWeb || !surroundings_.workspace.openURL(*page)) {
        surroundings_.frontEnd.feedback.beep();
    }
}

void RowActions::openOriginalURL(const engine::DQDownload& download) const {
    const auto url = originalURL(download);
    if (!url || !surroundings_.workspace.openURL(*url)) {
        surroundings_.frontEnd.feedback.beep();
    }
}

void RowActions::copyOriginalURL(const engine::DQDownload& download) const {
    if (const auto url = originalURL(download)) {
        copy({QStringList{url->absoluteString()}, url->absoluteString()});
    } else {
        surroundings_.frontEnd.feedback.beep();
    }
}

void RowActions::copyPath(engine::DQDownload& download) const {
    if (const QString path = download.pathByCheckingExistence(false); !path.isEmpty()) {
        copy({{}, path});
    } else {
        surroundings_.frontEnd.feedback.beep();
    }
}

void RowActions::openWithApplication(const QString& path, const QString& application) const {
    if (!surroundings_.workspace.openWithApplication(path, application)) {
        surroundings_.frontEnd.feedback.beep();
    }
}

void RowActions::copy(const Pasteboard& pasteboard) const {
    if (surroundings_.frontEnd.clipboard) {
        surroundings_.frontEnd.clipboard->copy(pasteboard);
    } else {
        surroundings_.frontEnd.feedback.beep();
    }
}

}  // namespace app
