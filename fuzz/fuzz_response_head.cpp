// Any bytes as the lines of response heads: nothing that a header cannot hold gets into one, and a
// part that does not begin where it was asked for is never accepted.
#include <string_view>

#include "fuzz_target.h"
#include "platform/net/response_head_reader.h"

void checkInput(const QByteArray& input) {
    std::string_view rest(input.constData(), static_cast<std::size_t>(input.size()));
    platform::HTTPHeaders request;
    request.set(QStringLiteral("Range"), QStringLiteral("bytes=7-"));
    platform::ResponseHeadReader reader(platform::askedRange(request), {true, true});
    reader.requestStarts();
    bool goesOn = true;
    while (goesOn && !rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size() - 1) + 1;
        goesOn = reader.takeLine(rest.substr(0, end));
        rest.remove_prefix(end);
    }
    if (goesOn)
        reader.end();
    if (!reader.head())
        return;
    require(reader.refusal().isEmpty());
    require(reader.head()->statusCode >= 200 && reader.head()->statusCode <= 999);
    for (const auto& [name, value] : reader.head()->headers.fields())
        require(!name.contains(u'\n') && !name.contains(u':') && !value.contains(u'\n'));
    const auto range = reader.head()->headers.value(QStringLiteral("Content-Range"));
    if (reader.head()->statusCode == 206)
        require(range && range->contains(u'7'));
}
