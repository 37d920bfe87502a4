#include "app/alert_lines.h"

#include "links/format/numbers.h"
#include "links/text/localization.h"

namespace app {

QString alertLines(const QStringList& lines) {
    constexpr qsizetype mostShown = 10;
    if (lines.size() <= mostShown)
        return lines.join(u'\n');
    const QString more = links::filledFormat(links::localized("(%lu more)"),
                                             {links::stringWithInteger(lines.size() - mostShown)});
    return (lines.first(mostShown - 1) + QStringList{more}).join(u'\n');
}

}  // namespace app
