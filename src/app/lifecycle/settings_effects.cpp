#include "app/lifecycle/settings_effects.h"

#include <QStringList>

#include "app/front_end.h"
#include "app/main_controller.h"
#include "app/settings.h"
#include "engine/queue/queue_admission.h"
#include "engine/settings.h"
#include "engine/workers/throttle.h"
#include "links/names/sort_keys.h"
#include "links/pages/download_page_rule_store.h"
#include "links/settings.h"
#include "platform/base/user_defaults.h"

namespace app {

namespace {

template <typename... Values>
QStringList names(const platform::Setting<Values>&... settings) {
    return {settings.name()...};
}

}  // namespace

SettingsEffects::SettingsEffects(platform::UserDefaults& defaults, DQMainController& controller,
                                 DownloadListView& list, links::DownloadPageRuleStore& pageRules)
    : defaults_(defaults),
      controller_(controller),
      list_(list),
      pageRules_(pageRules),
      observation_(defaults.observe([this](const QString& key) { settingDidChange(key); })) {}

void SettingsEffects::settingDidChange(const QString& key) {
    using namespace engine::settings;
    static const QStringList limits =
        names(numberOfConcurrentDownloads, numberOfConcurrentDownloadsPerHost);
    static const QStringList bandwidth = names(throttleEnabled, throttleLimit);
    static const QStringList fileNames =
        names(privateDownloadingPreservesExtensions, privateDownloadingAddsGenericPrefix,
              links::settings::plusSignsStandForBlanks);
    static const QStringList order = names(settings::sortingCriterion, settings::invertSorting,
                                           settings::toolbarFilterCriterion);
    static const QStringList rows =
        names(privateDownloading, displayLocationsAsNames, displayAccelerationConnections,
              revealByLaunching, intermediatesLocation);
    if (limits.contains(key)) {
        admitDownloads();
    } else if (bandwidth.contains(key)) {
        controller_.queue().throttle().apply();
        for (const engine::DownloadPtr& download :
             controller_.downloadsMatchingStatusMask(engine::DQDownloadStatusDownloading))
            download->transfer().measureSpeedAnew();
    } else if (fileNames.contains(key)) {
        makeNamesAnew();
    } else if (key == links::settings::ignorableSortingPrefixes.name()) {
        links::setSortPrefixes(links::sortPrefixesString(defaults_));
        makeNamesAnew();
        controller_.updateDownloadListAndStatus();
    } else if (order.contains(key)) {
        controller_.updateDownloadListAndStatus();
    } else if (rows.contains(key)) {
        list_.setNeedsDisplay();
        if (key == privateDownloading.name()) {
            // The queue's file is to hold no cookies any more.
            controller_.writeArchiveBeforeQuitting(false);
        }
    } else if (key == links::settings::downloadPageRules.name()) {
        readDownloadPageRules();
    }
}

void SettingsEffects::admitDownloads() {
    engine::QueueAdmission& admission = controller_.queue().admission();
    if (!admission.queuedDownloads().empty()) {
        admission.startEligibleQueuedDownloadsWithTimer();
    }
    list_.setNeedsDisplay();
}

void SettingsEffects::makeNamesAnew() {
    for (const engine::DownloadPtr& download : controller_.downloads()) {
        download->invalidateIconAndNameCache();
    }
    controller_.updateDownloadListAndStatus();
    list_.setNeedsDisplay();
}

void SettingsEffects::readDownloadPageRules() {
    constexpr platform::Seconds whileTyping = 0.1;
    pageRules_.forgetRules();
    for (const engine::DownloadPtr& download : controller_.downloads()) {
        download->reevaluateDownloadPageURLStatus();
    }
    list_.setNeedsDisplayAfterDelay(whileTyping);
}

}  // namespace app
