#include "app/intake/address_source.h"

#include <utility>

#include "app/settings.h"
#include "links/localization.h"
#include "links/settings.h"
#include "platform/base/log.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

ListedAddresses::ListedAddresses(std::vector<platform::Url> urls) : urls_(std::move(urls)) {}

std::optional<platform::Url> ListedAddresses::next() {
    return position_ < urls_.size() ? std::optional(std::move(urls_[position_++])) : std::nullopt;
}

TextAddresses::TextAddresses(links::URLCandidates candidates, QSet<QString> known)
    : candidates_(std::move(candidates)), known_(std::move(known)) {}

std::optional<platform::Url> TextAddresses::next() {
    while (const std::optional<QString> candidate = candidates_.next()) {
        if (known_.contains(links::comparisonURLString(*candidate))) {
            platform::debugLog(
                [&] { return links::filledFormat(u"skipping duplicate: %@"_s, {*candidate}); });
            continue;
        }
        std::optional<platform::Url> url = platform::Url::parse(*candidate);
        if (!url) {
            url = platform::Url::parseLenient(*candidate);
        }
        if (url) {
            return url;
        }
    }
    return {};
}

SingleOrMany::SingleOrMany(std::unique_ptr<AddressSource> rest) : rest_(std::move(rest)) {
    first_ = rest_->next();
    second_ = first_ ? rest_->next() : std::nullopt;
    isSingle_ = first_ && !second_;
}

std::optional<platform::Url> SingleOrMany::next() {
    if (first_) {
        return std::exchange(first_, std::nullopt);
    }
    return second_ ? std::exchange(second_, std::nullopt) : rest_->next();
}

namespace {

QSet<QString> comparisonURLStrings(const Downloads& downloads) {
    QSet<QString> strings;
    strings.reserve(static_cast<qsizetype>(downloads.size()));
    for (const engine::DownloadPtr& download : downloads) {
        if (const QString string = download->comparisonURLString(); !string.isEmpty()) {
            strings.insert(string);
        }
    }
    return strings;
}

std::unique_ptr<AddressSource> addressesOf(links::URLCandidates candidates, const Downloads& queue,
                                           const platform::UserDefaults& defaults) {
    QSet<QString> known;
    if (defaults.get(settings::instantDuplicateCheck)) {
        known = comparisonURLStrings(queue);
    }
    return std::make_unique<TextAddresses>(std::move(candidates), std::move(known));
}

}  // namespace

std::unique_ptr<AddressSource> addressesInText(const QString& text, const Downloads& queue,
                                               const platform::UserDefaults& defaults) {
    const bool skips = defaults.get(links::settings::skipRedirectingServices);
    return addressesOf(links::URLCandidates::fromString(text, skips), queue, defaults);
}

std::unique_ptr<AddressSource> addressesInCollection(const QStringList& items,
                                                     const Downloads& queue,
                                                     const platform::UserDefaults& defaults) {
    const bool skips = defaults.get(links::settings::skipRedirectingServices);
    return addressesOf(links::URLCandidates::fromCollection(items, skips), queue, defaults);
}

}  // namespace app
