#include "app/intake/refused_text.h"

#include <QStringList>
#include <algorithm>
#include <optional>

#include "links/recognition/address_start.h"
#include "links/text/localization.h"
#include "platform/net/url.h"
#include "platform/text/regular_expression.h"

namespace app {

using namespace Qt::Literals::StringLiterals;
using links::filledFormat;
using links::localized;
using Reason = RefusedText::Reason;

namespace {

/// A server's name that begins with "www.", or at the start of a text a server's name with a path.
QString addressWithoutScheme(const QString& text) {
    static const platform::RegularExpression inside(
        uR"((?:^|[\s("'<\[])(www\.[\p{L}\p{N}-]+(?:\.[\p{L}\p{N}-]+)+(?::\d+)?(?:/[^\s<>"']*[^\s<>"'.,;:!?)\]])?))"_s);
    static const platform::RegularExpression whole(
        uR"(^([\p{L}\p{N}-]+(?:\.[\p{L}\p{N}-]+)*\.\p{L}{2,}(?::\d+)?/\S*)$)"_s);
    if (const auto found = platform::RegularExpression(inside).firstCapture(text, 1)) {
        return *found;
    }
    return platform::RegularExpression(whole).firstCapture(text, 1).value_or(QString());
}

/// An address that another program is for.
bool hasOtherScheme(const QString& text) {
    static const platform::RegularExpression address(
        uR"(^(?:[a-z][a-z0-9+.-]+:(?://|\?)|(?:mailto|data|javascript|tel|news|urn|ed2k):)\S+$)"_s);
    return platform::RegularExpression(address).firstMatch(text).has_value();
}

}  // namespace

RefusedText refusedText(const QString& text) {
    if (text.size() > platform::Url::longest) {
        constexpr qsizetype shown = 200;
        const QString beginning = text.first(shown) + u'\u2026';
        return {beginning, Reason::TooLong, beginning};
    }
    if (const QString address = addressWithoutScheme(text); !address.isEmpty()) {
        return {text, Reason::LacksScheme, u"https://"_s + address};
    }
    const auto start = links::findAddressStart(text);
    if (start && start->position == 0) {
        return {text, Reason::Malformed, text};
    }
    return {text, hasOtherScheme(text) ? Reason::OtherScheme : Reason::NoAddress, text};
}

QString refusalLine(const RefusedText& refused) {
    switch (refused.reason) {
        case Reason::LacksScheme:
            return filledFormat(localized("no address without its scheme, as in %@: %@"),
                                {refused.proposal, refused.text});
        case Reason::OtherScheme:
            return filledFormat(localized("no address of http, https or a file: %@"),
                                {refused.text});
        case Reason::Malformed:
            return filledFormat(localized("no valid address: %@"), {refused.text});
        case Reason::TooLong:
            return filledFormat(localized("too long for an address: %@"), {refused.text});
        case Reason::NoAddress:
            break;
    }
    return filledFormat(localized("no address: %@"), {refused.text});
}

QString refusalExplanation(const std::vector<RefusedText>& refused) {
    const auto holds = [&](Reason reason) {
        return std::any_of(refused.begin(), refused.end(),
                           [&](const RefusedText& one) { return one.reason == reason; });
    };
    QStringList sentences;
    if (holds(Reason::LacksScheme)) {
        sentences.append(
            localized("Addresses that lacked their scheme got https in front of them."));
    }
    if (holds(Reason::OtherScheme)) {
        sentences.append(
            localized("Orlop downloads addresses of http, https and files, no others."));
    }
    if (holds(Reason::Malformed)) {
        sentences.append(localized("An address that names no server cannot be downloaded."));
    }
    if (holds(Reason::TooLong)) {
        sentences.append(
            localized("No server takes an address of more than a million characters."));
    }
    if (holds(Reason::NoAddress)) {
        sentences.append(localized("There is no address in the text that is left."));
    }
    return sentences.join(u' ');
}

}  // namespace app
