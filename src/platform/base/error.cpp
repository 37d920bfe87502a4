#include "platform/base/error.h"

#include <system_error>

namespace platform {

Error posixError(int errorNumber) {
    const std::string text = std::system_category().message(errorNumber);
    return {posixErrorDomain, errorNumber, QString::fromLocal8Bit(text), nullptr};
}

}  // namespace platform
