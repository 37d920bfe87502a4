#include "links/recognition/whole_address.h"

namespace links {

bool isWholeAddress(const platform::Url& url) {
    if (url.isFile())
        return url.encodedPath().startsWith(u'/');
    return (url.hasScheme("http") || url.hasScheme("https")) && !url.host().isEmpty();
}

std::optional<platform::Url> wholeAddress(const QString& candidate) {
    auto url = platform::Url::parse(candidate);
    if (!url)
        url = platform::Url::parseLenient(candidate);
    return url && isWholeAddress(*url) ? url : std::nullopt;
}

}  // namespace links
