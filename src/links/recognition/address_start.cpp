#include "links/recognition/address_start.h"

#include <array>

#include "platform/text/ascii.h"

namespace links {
namespace {

constexpr qsizetype longestDisguise = 8;

/// What stands between the scheme and the host.
constexpr std::array<QStringView, 5> separators{u"://", u":\\/\\/", u"[:]//", u"[://]",
                                                u"%3A%2F%2F"};

bool isLetterOrDigit(QChar unit) {
    return platform::isAsciiAlphanumeric(unit);
}

bool isOfScheme(QChar unit) {
    return isLetterOrDigit(unit) || QStringView(u"*+-._#~").contains(unit);
}

/// The length of the scheme at the end of `text`; 0: there is none of http.
qsizetype schemeLength(QStringView text) {
    qsizetype length = 0;
    while (length < text.size() && length < 2 * longestDisguise &&
           isOfScheme(text[text.size() - 1 - length]))
        ++length;
    const QStringView word = text.last(length);
    for (const QStringView scheme : {QStringView(u"https"), QStringView(u"http")}) {
        if (!word.endsWith(scheme, Qt::CaseInsensitive))
            continue;
        // As in "git+https", another program's scheme.
        const bool isPart =
            word.size() > scheme.size() && word[word.size() - scheme.size() - 1] == u'+';
        return isPart ? 0 : scheme.size();
    }
    const bool isDisguised = word.size() > 2 && word.size() <= longestDisguise &&
                             word.startsWith(u'h', Qt::CaseInsensitive) &&
                             (word.endsWith(u'p', Qt::CaseInsensitive) ||
                              (word.endsWith(u"ps", Qt::CaseInsensitive) && word.size() > 3));
    return isDisguised ? word.size() : 0;
}

}  // namespace

std::optional<AddressStart> findAddressStart(QStringView text, qsizetype from) {
    for (qsizetype at = from; at < text.size(); ++at) {
        const QChar unit = text[at];
        if (unit != u':' && unit != u'[' && unit != u'%')
            continue;
        for (const QStringView separator : separators) {
            if (!text.sliced(at).startsWith(separator, Qt::CaseInsensitive))
                continue;
            if (const qsizetype length = schemeLength(text.sliced(from, at - from)))
                return AddressStart{at - length, at + separator.size()};
        }
    }
    return std::nullopt;
}

}  // namespace links
