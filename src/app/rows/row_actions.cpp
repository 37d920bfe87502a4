#include "app/rows/row_actions.h"

#include "app/rows/file_presence.h"
#include "engine/record/user_settings.h"
#include "engine/settings.h"
#include "links/paths/path_components.h"
#include "links/text/localization.h"
#include "platform/base/user_defaults.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace app {

namespace {

std::optional<platform::Url> originalURL(const engine::DQDownload& download) {
    const auto url = platform::Url::parse(download.originalURLString());
    return url && !url->isEmpty() ? url : std::nullopt;
}

QString folderOf(const engine::DQDownload& download) {
    return links::stringByDeletingLastPathComponent(download.path());
}

/// Finished, and no longer anywhere near where it was put.
bool isGone(engine::DQDownload& download) {
    return download.status() == engine::DQDownloadStatusDone && !download.path().isEmpty() &&
           !download.fileExists();
}

Alert goneAlert(const engine::Downloads& gone, const char* offer) {
    using links::filledFormat;
    using links::localized;
    const engine::DQDownload& first = *gone.front();
    const bool isOne = gone.size() == 1;
    return {Alert::Kind::FilesGone,
            isOne ? filledFormat(localized("“%@” is gone"), {first.displayName()})
                  : filledFormat(localized("%@ files are gone"), {QString::number(gone.size())}),
            isOne ? filledFormat(localized("The file was in %@ and has been moved or deleted."),
                                 {platform::abbreviateWithTilde(folderOf(first))})
                  : localized("They have been moved or deleted."),
            QString::fromUtf8(offer), u"Cancel"_s};
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

void RowActions::open(const engine::Downloads& downloads) const {
    engine::Downloads gone;
    for (const engine::DownloadPtr& download : downloads) {
        if (isGone(*download)) {
            gone.push_back(download);
        } else {
            openOne(*download);
        }
    }
    if (gone.empty()) {
        return;
    }
    surroundings_.frontEnd.feedback.beep();
    if (surroundings_.frontEnd.questions.confirm(
            goneAlert(gone, links::translatable("Download Again")))) {
        for (const engine::DownloadPtr& download : gone) {
            surroundings_.retry(*download);
        }
    }
}

void RowActions::openOne(engine::DQDownload& download) const {
    const bool isOpened = download.status() == engine::DQDownloadStatusDone &&
                          !download.isWrongFile() && download.fileExists() &&
                          surroundings_.workspace.openURL(download.URL());
    if (!isOpened) {
        reveal(download);
    }
}

void RowActions::reveal(engine::DQDownload& download) const {
    if (isGone(download)) {
        revealFolder(download.shared_from_this());
        return;
    }
    const QString path = download.pathToReveal();
    if (path.isEmpty() || !surroundings_.workspace.revealFile(path)) {
        surroundings_.frontEnd.feedback.beep();
    }
}

void RowActions::revealFolder(const engine::DownloadPtr& download) const {
    const QString folder = folderOf(*download);
    if (!platform::pathExists(folder)) {
        open({download});
        return;
    }
    surroundings_.frontEnd.feedback.beep();
    if (surroundings_.frontEnd.questions.confirm(
            goneAlert({download}, links::translatable("Open Its Folder"))) &&
        !surroundings_.workspace.openURL(platform::Url::fromFilePath(folder))) {
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
