#include "app/terminal/opened_items.h"

#include <QFileInfo>

#include "app/intake/refused_text.h"
#include "app/intake/url_handler_command.h"
#include "links/recognition/text_addresses.h"
#include "links/text/localization.h"

namespace app::terminal {

using namespace Qt::Literals::StringLiterals;

OpenedItems openedItems(const QStringList& words, const QString& list,
                        bool skipsRedirectingServices) {
    OpenedItems opened;
    for (const QString& word : words) {
        if (word == u"-"_s)
            opened.items.append(list);
        else if (const QFileInfo file(word); file.exists())
            opened.items.append(file.absoluteFilePath());
        else if (hasProgramScheme(word) ||
                 links::TextAddresses::holdsAddress({word}, skipsRedirectingServices))
            opened.items.append(word);
        else
            opened.refusals.append(
                links::filledFormat(links::localized("neither a file nor an address; %@"),
                                    {refusalLine(refusedText(word))}));
    }
    return opened;
}

}  // namespace app::terminal
