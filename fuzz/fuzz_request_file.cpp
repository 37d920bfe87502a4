// Any bytes as a request file of a browser, and as a list of addresses.
#include <cstdint>
#include <cstdlib>

#include "app/intake/address_list.h"
#include "app/intake/request_file.h"
#include "app/intake/script_arguments.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const QByteArray data(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    if (const auto file = app::requestFileFromData(data)) {
        if (file->url.isEmpty() || file->request.contains(QStringLiteral("DQOBPSourceURL")))
            std::abort();
        static_cast<void>(app::scriptArgumentsFromDictionary(file->request).request());
    }
    static_cast<void>(app::addressListText(data));
    return 0;
}
