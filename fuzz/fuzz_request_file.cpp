#include "app/intake/address_list.h"
#include "app/intake/request_file.h"
#include "app/intake/script_arguments.h"
#include "fuzz_target.h"

/// Any bytes as a request file of a browser, and as a list of addresses.
void checkInput(const QByteArray& input) {
    if (const auto file = app::requestFileFromData(input)) {
        require(!file->url.isEmpty());
        require(!file->request.contains(QStringLiteral("DQOBPSourceURL")));
        static_cast<void>(app::scriptArgumentsFromDictionary(file->request).request());
    }
    static_cast<void>(app::addressListText(input));
}
