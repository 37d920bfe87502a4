// Any bytes as strict JSON: what is accepted must be JSON to the parser behind it as well, and must
// come back the same from every layout; what is refused must say why.
#include <nlohmann/json.hpp>

#include "fuzz_target.h"
#include "structured/json/json_reader.h"
#include "structured/json/json_writer.h"

void checkInput(const QByteArray& input) {
    using structured::JsonLayout;
    const structured::JsonResult result = structured::readJson(input);
    if (!result.value.isValid()) {
        require(!result.error.text.isEmpty() && result.error.line > 0 && result.error.column > 0);
        return;
    }
    require(nlohmann::json::accept(input.begin(), input.end()));
    for (const bool escapesSlashes : {false, true}) {
        for (const JsonLayout layout : {JsonLayout::Pretty, JsonLayout::Compact}) {
            const auto written = structured::writeJson(result.value, {layout, escapesSlashes});
            require(written && structured::readJson(written->toUtf8()).value == result.value);
        }
    }
}
