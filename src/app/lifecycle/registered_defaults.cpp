#include "app/lifecycle/registered_defaults.h"

#include "app/settings.h"
#include "engine/settings.h"
#include "links/settings.h"
#include "platform/base/user_defaults.h"

namespace app {

namespace {

template <typename... Values>
QVariantMap fallbacks(const platform::Setting<Values>&... settings) {
    QVariantMap values;
    (values.insert(settings.name(), QVariant::fromValue(settings.fallback)), ...);
    return values;
}

}  // namespace

void registerDefaults(platform::UserDefaults& defaults) {
    defaults.registerDefaults(
        fallbacks(settings::mainWindowVisibleOnLaunch, settings::fullScreenModeBehavior,
                  engine::settings::intermediatesLocation, settings::autoStart,
                  engine::settings::uselessAnimations, settings::swapDockCounters,
                  settings::successBounceMode, settings::successHeartbeatMode,
                  links::settings::skipRedirectingServices, settings::instantDuplicateCheck,
                  settings::rememberSelection, settings::numberOfHistoryItems,
                  settings::historyOfCompleteDownloads, settings::numberOfTopLevelHistoryItems,
                  settings::autoResumeAfterSleepDelay, engine::settings::storeMetadataLocally,
                  engine::settings::throttleSupported, engine::settings::throttleLimit,
                  engine::settings::filenameExtensionPolicy));
}

}  // namespace app
