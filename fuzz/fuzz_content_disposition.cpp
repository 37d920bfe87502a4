#include <QString>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "links/content_disposition.h"
#include "links/path_components.h"

/// A header field as servers send it: what comes out is one component of a path.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString field =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QString name = links::filenameFromContentDisposition(field);
    if (name != links::lastPathComponent(name))
        std::abort();
    return 0;
}
