// Any bytes as a property list: what is accepted can be written in both forms, and what was written
// once is written the same again.
#include <cstdint>
#include <cstdlib>

#include "platform/files/property_list.h"
#include "structured/lson_serialization.h"

namespace {

void require(bool condition) {
    if (!condition)
        std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using platform::PropertyListFormat;
    const QByteArray data(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    const platform::PropertyListResult result = platform::readPropertyList(data);
    if (!result.value.isValid()) {
        require(!result.error.text.isEmpty());
        return 0;
    }
    for (const PropertyListFormat format : {PropertyListFormat::Xml, PropertyListFormat::Binary}) {
        const QByteArray written = platform::writePropertyList(result.value, format);
        const platform::PropertyListResult again = platform::readPropertyList(written);
        require(again.value.isValid() && again.format == format);
        require(platform::writePropertyList(again.value, format) == written);
    }
    const auto shorthand = structured::DQLSONSerialization::XMLStringWithObject(result.value, true);
    require(shorthand.has_value());
    return 0;
}
