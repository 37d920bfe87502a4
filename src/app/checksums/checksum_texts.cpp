#include "app/checksums/checksum_texts.h"

#include "engine/lifecycle/download.h"
#include "links/text/localization.h"

namespace app {

using namespace Qt::Literals::StringLiterals;
using engine::ChecksumResult;
using links::filledFormat;
using links::localized;

namespace {

/// As much as tells two values apart at a glance.
QString beginning(const engine::Checksum& checksum) {
    constexpr qsizetype shown = 8;
    return checksum.hex().first(shown) + u'…';
}

QString titleOf(const std::optional<engine::Checksum>& checksum) {
    return engine::algorithmTitle(checksum.value_or(engine::Checksum()).algorithm);
}

}  // namespace

QString checksumText(const engine::DQDownload& download) {
    const auto expected = engine::expectedChecksum(download.userSettings());
    if (download.isVerifying())
        return filledFormat(localized("Verifying %@..."), {titleOf(expected)});
    const auto computed = engine::computedChecksum(download.userSettings());
    switch (engine::checksumResult(download.userSettings())) {
        case ChecksumResult::Verified:
            return filledFormat(localized("Verified %@"), {titleOf(computed)});
        case ChecksumResult::Wrong:
            if (expected && computed)
                return filledFormat(
                    localized("Wrong %@: %@ in place of %@"),
                    {titleOf(expected), beginning(*computed), beginning(*expected)});
            break;
        case ChecksumResult::Computed:
            if (computed)
                return titleOf(computed) + u' ' + beginning(*computed);
            break;
        case ChecksumResult::Unreadable:
            return localized("Cannot be read for its checksum");
        case ChecksumResult::Verifying:
        case ChecksumResult::Unknown:
            break;
    }
    return {};
}

QString wrongFileSentence(const engine::DQDownload& download) {
    const auto expected = engine::expectedChecksum(download.userSettings());
    const auto computed = engine::computedChecksum(download.userSettings());
    if (!download.isWrongFile() || !expected || !computed)
        return {};
    return filledFormat(
        localized("This is not the file that was expected: its %@ is %@ and not %@."),
        {titleOf(expected), computed->hex(), expected->hex()});
}

}  // namespace app
