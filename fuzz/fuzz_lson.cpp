// Any text in any spelling: what can be read comes back the same from every spelling of JSON, and
// the shorthand differs from JSON by what the two expressions that define it say.
#include "fuzz_target.h"
#include "platform/text/regular_expression.h"
#include "structured/shorthand/lson_serialization.h"
#include "structured/text_view/syntax_highlighting.h"

using namespace Qt::Literals::StringLiterals;

namespace {

void checkTransformations(const QString& text) {
    using Serialization = structured::DQLSONSerialization;
    static const platform::RegularExpression commas(uR"re(([^,:\s\[{]\s*),([\n\r]\s*+[^\]}]))re"_s);
    static const platform::RegularExpression lineEnds(
        uR"re(([^,:\s\[{]\s*)([\n\r]\s*+[^\]}]))re"_s);
    require(Serialization::LSONStringFromJSONString(text) == commas.replaceAll(text, u"$1$2"_s));
    require(Serialization::JSONStringFromLSONString(text) == lineEnds.replaceAll(text, u"$1,$2"_s));
}

}  // namespace

void checkInput(const QByteArray& input) {
    using Serialization = structured::DQLSONSerialization;
    const QString text = QString::fromUtf8(input);
    checkTransformations(text);
    const structured::ParsedText parsed = Serialization::objectWithString(text);
    static_cast<void>(structured::syntaxHighlighting(text, parsed.format));
    if (!structured::isJSON(parsed.format))
        return;
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
}
