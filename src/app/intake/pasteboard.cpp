#include "app/intake/pasteboard.h"

#include "links/text/trimming.h"

namespace app {

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
