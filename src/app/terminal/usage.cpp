#include "app/terminal/usage.h"

#include "links/text/localization.h"

namespace app::terminal {

QString usageText() {
    return links::localized(
        "Usage: orlop-terminal [-KEY VALUE]... [ADDRESS|FILE]...\n"
        "Downloads addresses, lists of addresses (.txt) and begun downloads (.orlop) into\n"
        "the downloads folder, together with what an earlier run left in the queue, and\n"
        "ends when all is done.\n"
        "\n"
        "  -KEY VALUE   a setting for this run only, such as -\"Downloads Folder\" /tmp\n"
        "  -            read addresses from standard input, one a line\n"
        "  --           only addresses and files follow\n"
        "  --help       show this text\n"
        "  --version    show the version\n"
        "\n"
        "  add, list, pause, resume, remove, wait\n"
        "               ask something of a running Orlop; add --help says more\n"
        "\n"
        "Control-C pauses all downloads and saves the queue; the next run goes on. Pressed\n"
        "twice, it ends at once.\n"
        "\n"
        "Exit status: 0 if every download completed, 1 if one failed or something given could\n"
        "not be opened, 2 on bad usage.\n");
}

}  // namespace app::terminal
