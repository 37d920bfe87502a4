#include "app/intake/pasteboard.h"

#include <algorithm>

#include "links/text/trimming.h"

namespace app {

QStringList Pasteboard::texts() const {
    if (urls && !urls->isEmpty()) {
        return *urls;
    }
    return text ? QStringList(*text) : QStringList();
}

bool Pasteboard::isBlank() const {
    const QStringList all = texts();
    return std::all_of(all.begin(), all.end(),
                       [](const QString& one) { return links::trimmedString(one).isEmpty(); });
}

QStringList addressesFromUriList(const QString& list) {
    QStringList addresses;
    for (const QString& line : list.split(u'\n')) {
        const QString address = links::trimmedString(line);
        if (!address.isEmpty() && !address.startsWith(u'#')) {
            addresses.append(address);
        }
    }
    return addresses;
}

}  // namespace app
