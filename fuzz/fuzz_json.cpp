// Any bytes as strict JSON: what is accepted must be JSON to the parser behind it as well, and must
// come back the same from every layout; what is refused must say why.
#include <cstdint>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "structured/json_reader.h"
#include "structured/json_writer.h"

namespace {

void require(bool condition) {
    if (!condition)
        std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using structured::JsonLayout;
    const QByteArray text(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    const structured::JsonResult result = structured::readJson(text);
    if (!result.value.isValid()) {
        require(!result.error.text.isEmpty() && result.error.line > 0 && result.error.column > 0);
        return 0;
    }
    require(nlohmann::json::accept(text.begin(), text.end()));
    for (const bool escapesSlashes : {false, true}) {
        for (const JsonLayout layout : {JsonLayout::Pretty, JsonLayout::Compact}) {
            const auto written = structured::writeJson(result.value, {layout, escapesSlashes});
            require(written && structured::readJson(written->toUtf8()).value == result.value);
        }
    }
    return 0;
}
