#include "scripting/hand_overs/renewal.h"

#include <algorithm>

#include "engine/record/known_file.h"
#include "engine/record/user_settings.h"
#include "links/text/localization.h"

namespace scripting {

namespace keys = engine::keys;

namespace {

void start(app::DQMainController& controller, engine::DQDownload& download) {
    download.setHeldBack(false);
    controller.queue().admission().startEligibleQueuedDownloadsWithTimer();
}

bool hasFailed(const engine::DQDownload& download) {
    return download.status() == engine::DQDownloadStatusAborted ||
           (download.status() == engine::DQDownloadStatusPaused && download.isInterrupted());
}

/// Null: nothing that has failed can be this file.
engine::DownloadPtr failedOne(app::DQMainController& controller, const Renewed& renewed) {
    if (renewed.page.isEmpty() || !renewed.size) {
        return nullptr;
    }
    const app::Downloads& downloads = controller.downloads();
    const auto found = std::find_if(downloads.begin(), downloads.end(), [&](const auto& other) {
        return other != renewed.download && !other->isBeingRemoved() && hasFailed(*other) &&
               other->holdsPartialData() &&
               other->userSettings().string(keys::page) == renewed.page &&
               other->name() == renewed.download->name() &&
               engine::knownFile(other->userSettings()).length == *renewed.size;
    });
    return found == downloads.end() ? nullptr : *found;
}

bool wantsToGoOn(app::DQMainController& controller, const engine::DQDownload& failed) {
    const app::Alert alert{
        app::Alert::Kind::Renewal,
        links::filledFormat(links::localized("Go on with %@?"), {failed.displayName()}),
        QStringLiteral("It was handed over again from the same page, with the same name and size. "
                       "What has come of it can be kept."),
        QStringLiteral("Go On"), QStringLiteral("Begin Anew")};
    return controller.surroundings().frontEnd.questions.confirm(alert);
}

void goOnWith(app::DQMainController& controller, const engine::DownloadPtr& failed,
              engine::DQDownload& renewed) {
    for (const QString& key : {keys::identity, keys::downloadFile, keys::downloadFolder}) {
        renewed.userSettings().set(key, failed->userSettings().value(key));
    }
    renewed.takeOverPartialData(*failed);
    // Not where the link that has expired led to.
    renewed.userSettings().set(keys::responseURL, renewed.URLString());
    controller.queue().remove(*failed);
    controller.updateDownloadListAndStatus();
    controller.writeArchiveBeforeQuitting(false);
}

}  // namespace

void offerRenewal(app::DQMainController& controller, const Renewed& renewed,
                  platform::Timers& timers) {
    if (!failedOne(controller, renewed) || !controller.surroundings().frontEnd.questions.canAsk()) {
        start(controller, *renewed.download);
        return;
    }
    timers.start(0, [&controller, renewed] {
        const engine::DownloadPtr failed = failedOne(controller, renewed);
        const bool goesOn = failed && wantsToGoOn(controller, *failed);
        // The question lets the main loop go on.
        if (goesOn && controller.queue().contains(*renewed.download) &&
            failedOne(controller, renewed) == failed) {
            goOnWith(controller, failed, *renewed.download);
        }
        start(controller, *renewed.download);
    });
}

}  // namespace scripting
