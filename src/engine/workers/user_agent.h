#pragma once

#include <QString>
#include <optional>

#include "platform/net/url.h"

namespace platform {
class UserDefaults;
}

namespace engine {

/// The program's name as servers see it, in the form that browsers use.
[[nodiscard]] const QString& defaultUserAgent();

/// What to send to this address: the user's own, else the default. Nothing: send none.
[[nodiscard]] std::optional<QString> userAgentForURL(const platform::Url& url,
                                                     const platform::UserDefaults& defaults);

}  // namespace engine
