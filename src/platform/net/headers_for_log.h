#pragma once

#include <QString>

#include "platform/net/http_message.h"

namespace platform {

/// Header fields as one line for a log: of those that let somebody in, such as cookies, only the
/// name, and of a challenge only its scheme, which may be followed by half of a handshake.
[[nodiscard]] QString headersForLog(const HTTPHeaders& headers);

}  // namespace platform
