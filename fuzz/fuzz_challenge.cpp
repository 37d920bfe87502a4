// Any text as a challenge: what is accepted can be shown, and answered within one header field.
#include <QStringList>
#include <algorithm>

#include "fuzz_target.h"
#include "platform/net/http_authentication.h"

namespace {

bool hasControlCharacters(const QString& text) {
    return std::any_of(text.begin(), text.end(),
                       [](QChar c) { return c.unicode() < 0x20 || c.unicode() == 0x7f; });
}

}  // namespace

void checkInput(const QByteArray& input) {
    const QString text = QString::fromUtf8(input);
    platform::HTTPResponseHead head;
    head.statusCode = 401;
    for (const QString& line : text.split(u'\n'))
        head.headers.add(QStringLiteral("WWW-Authenticate"), line);
    const auto authentication = platform::HTTPAuthentication::createFromResponse(head);
    if (authentication == nullptr)
        return;
    require(!hasControlCharacters(authentication->realm()));
    const platform::HTTPRequestMessage message{
        QStringLiteral("GET"),
        platform::Url::parse(QStringLiteral("http://example.com/a?b")).value(),
        platform::HTTPVersion::Http11,
        {}};
    // A server that finds every answer too old must not be answered for ever.
    for (int rounds = 0; !authentication->considerResponse(head); ++rounds) {
        require(rounds < 8);
        const auto answer = authentication->answer(
            {QStringLiteral("us\"er"), QStringLiteral("p\\w"), {}}, message, false);
        require(answer && !hasControlCharacters(answer->header));
    }
}
