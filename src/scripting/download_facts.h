#pragma once

#include <QString>
#include <QVariantMap>

#include "app/main_controller.h"

namespace scripting {

/// What scripts are told of a download, by the keys of the interface. Main thread.
[[nodiscard]] QVariantMap factsOf(app::DQMainController& controller, engine::DQDownload& download);
[[nodiscard]] QString identityOf(const engine::DQDownload& download);
/// What is another in `now` than it was `before`; what is gone has an empty text.
[[nodiscard]] QVariantMap differences(const QVariantMap& before, const QVariantMap& now);

}  // namespace scripting
