// Any bytes as a property list: what is accepted can be written in both forms, and what was written
// once is written the same again.
#include "fuzz_target.h"
#include "platform/files/property_list.h"
#include "structured/shorthand/lson_serialization.h"

void checkInput(const QByteArray& input) {
    using platform::PropertyListFormat;
    const platform::PropertyListResult result = platform::readPropertyList(input);
    if (!result.value.isValid()) {
        require(!result.error.text.isEmpty());
        return;
    }
    for (const PropertyListFormat format : {PropertyListFormat::Xml, PropertyListFormat::Binary}) {
        const QByteArray written = platform::writePropertyList(result.value, format);
        const platform::PropertyListResult again = platform::readPropertyList(written);
        require(again.value.isValid() && again.format == format);
        require(platform::writePropertyList(again.value, format) == written);
    }
    const auto shorthand = structured::DQLSONSerialization::XMLStringWithObject(result.value, true);
    require(shorthand.has_value());
}
