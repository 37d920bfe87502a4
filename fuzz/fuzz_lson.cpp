// Any text in any spelling: what can be read comes back the same from every spelling that it has.
#include <cstdint>
#include <cstdlib>

#include "structured/lson_serialization.h"
#include "structured/syntax_highlighting.h"

namespace {

void require(bool condition) {
    if (!condition)
        std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using Serialization = structured::DQLSONSerialization;
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    const structured::ParsedText parsed = Serialization::objectWithString(text);
    static_cast<void>(structured::syntaxHighlighting(text, parsed.format));
    if (!structured::isJSON(parsed.format))
        return 0;
    for (const bool unwrap : {false, true}) {
        for (const bool useLSON : {false, true}) {
            const auto written =
                Serialization::JSONStringWithObject(parsed.object, unwrap, useLSON);
            require(written.has_value());
            // An object without members has nothing left when unwrapped.
            require(written->isEmpty() ||
                    Serialization::objectWithString(*written).object == parsed.object);
        }
    }
    return 0;
}
