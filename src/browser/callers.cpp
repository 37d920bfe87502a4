#include "browser/callers.h"

namespace browser {

using namespace Qt::Literals::StringLiterals;

std::optional<bool> isOurExtension(const QStringList& arguments) {
    if (arguments.isEmpty() || arguments.first().startsWith("--"_L1))
        return std::nullopt;
    const QString& first = arguments.first();
    if (first.contains("://"_L1))
        return first == "chrome-extension://"_L1 + chromiumExtension + '/'_L1;
    if (arguments.size() < 2 || !first.endsWith(".json"_L1))
        return std::nullopt;
    return arguments.at(1) == firefoxExtension;
}

}  // namespace browser
