#include "engine/presentation/action_buttons.h"

#include "engine/environment.h"
#include "engine/record/download.h"
#include "engine/settings.h"
#include "platform/files/files.h"

namespace engine {
namespace {

void performPrimaryAction(DQDownload& download) {
    switch (download.status()) {
        case DQDownloadStatusPaused:
        case DQDownloadStatusQueued:
            if (environment().isAlternateFunctionalityEvent())
                download.startDownload();
            else
                download.togglePause();
            return;
        case DQDownloadStatusDownloading:
            download.togglePause();
            return;
        case DQDownloadStatusDone:
            if (platform::standardDefaults().get(settings::revealByLaunching))
                download.open();
            else
                download.reveal();
            return;
        case DQDownloadStatusAborted:
            environment().beep();
            return;
    }
}

std::optional<platform::Url> originalURL(const DQDownload& download) {
    const auto url = platform::Url::parse(download.originalURLString());
    return url && !url->isEmpty() ? url : std::nullopt;
}

}  // namespace

bool canPerformAction(DQDownload& download, unsigned index) {
    if (download.isVanishing())
        return false;
    if (index == DQDownloadActionPrimary)
        return matchesStatusMask(download.status(), unfinishedStatuses) || download.fileExists();
    return index == DQDownloadActionRemove;
}

void performAction(DQDownload& download, unsigned index) {
    if (index == DQDownloadActionRemove)
        download.remove();
    else if (index == DQDownloadActionPrimary)
        performPrimaryAction(download);
}

void openDownload(DQDownload& download) {
    const bool isOpened = download.status() == DQDownloadStatusDone && download.fileExists() &&
                          environment().openURL(download.URL());
    if (!isOpened)
        revealDownload(download);
}

void revealDownload(DQDownload& download) {
    const QString path = download.pathToReveal();
    if (path.isEmpty() || !environment().revealFile(path))
        environment().beep();
}

void openOriginalURLOfDownload(const DQDownload& download) {
    const auto url = originalURL(download);
    if (!url || !environment().openURL(*url))
        environment().beep();
}

void copyOriginalURLOfDownload(const DQDownload& download) {
    if (const auto url = originalURL(download))
        environment().copyURL(*url);
    else
        environment().beep();
}

void copyPathOfDownload(DQDownload& download) {
    if (const QString path = download.path(); !path.isEmpty())
        environment().copyText(path);
    else
        environment().beep();
}

}  // namespace engine
