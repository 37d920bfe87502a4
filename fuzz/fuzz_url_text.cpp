#include <QString>

#include "fuzz_target.h"
#include "links/recognition/url_candidates.h"
#include "links/repair/percent_escapes.h"
#include "platform/net/url.h"

/// Text as pasted or dropped: no more than a bounded number of candidates is asked for, each made
/// into an address as intake does.
void checkInput(const QByteArray& input) {
    constexpr int mostCandidates = 40;
    const QString text = QString::fromUtf8(input);
    auto candidates = links::URLCandidates::fromString(text, input.size() % 2 == 0);
    for (int count = 0; count < mostCandidates; ++count) {
        const auto candidate = candidates.next();
        if (!candidate)
            break;
        const auto encoded = links::URLEncodedString(*candidate);
        if (!encoded)
            continue;
        // What has been escaped once is made of legal characters only.
        if (links::URLEncodedString(*encoded) != *encoded)
            std::abort();
        static_cast<void>(platform::Url::parse(*candidate));
        static_cast<void>(platform::Url::parse(*encoded));
    }
}
