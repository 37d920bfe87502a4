// Any text as a URL: what is accepted keeps its text and its parts lie within it; what is resolved
// or guessed is a URL again.
#include "fuzz_target.h"
#include "platform/net/url.h"

namespace {

void check(const platform::Url& url) {
    const QString text = url.absoluteString();
    require(platform::Url::parse(text) == url);
    QString rebuilt = url.encodedPath();
    if (const auto query = url.query())
        rebuilt += u'?' + *query;
    if (const auto fragment = url.fragment())
        rebuilt += u'#' + *fragment;
    require(text.startsWith(url.scheme()) && text.endsWith(rebuilt));
    require(!url.forTransfer().hasUserInfo() && !url.forTransfer().fragment());
    require(url.forTransfer().hasSameOrigin(url));
}

}  // namespace

void checkInput(const QByteArray& input) {
    const QString text = QString::fromUtf8(input);
    const auto base = platform::Url::parse(QStringLiteral("http://u@h:1/a/b?c#d")).value();
    if (const auto url = platform::Url::parse(text)) {
        check(*url);
        require(url->absoluteString() == text);
        const auto resolved = base.resolved(text);
        require(resolved.has_value() && !resolved->scheme().isEmpty());
        check(*resolved);
    }
    if (const auto url = platform::Url::parseLenient(text))
        check(*url);
}
