#include "app/intake/address_source.h"

#include <utility>

#include "app/settings.h"
#include "links/paths/folders.h"
#include "links/paths/path_components.h"
#include "links/settings.h"
#include "links/text/localization.h"
#include "platform/base/log.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype mostRefusedTexts = 1000;

}  // namespace

ListedAddresses::ListedAddresses(std::vector<platform::Url> urls) : urls_(std::move(urls)) {}

std::optional<platform::Url> ListedAddresses::next() {
    return position_ < urls_.size() ? std::optional(std::move(urls_[position_++])) : std::nullopt;
}

TextAddresses::TextAddresses(links::URLCandidates candidates, KnownAddresses known,
                             RefusedTexts refused)
    : candidates_(std::move(candidates)), known_(std::move(known)), refused_(std::move(refused)) {}

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
        if (refused_ && refused_->size() < mostRefusedTexts) {
            refused_->append(*candidate);
        }
    }
    return {};
}

SingleOrMany::SingleOrMany(std::unique_ptr<AddressSource> rest) : rest_(std::move(rest)) {}

std::optional<platform::Url> SingleOrMany::next() {
    if (std::exchange(hasBegun_, true)) {
        return second_ ? std::exchange(second_, std::nullopt) : rest_->next();
    }
    std::optional<platform::Url> first = rest_->next();
    second_ = first ? rest_->next() : std::nullopt;
    isSingle_ = first && !second_;
    return first;
}

namespace {

/// A folder to be walked, which a bundle is not.
bool isFolder(const platform::Url& url) {
    const QString path = url.filePath();
    return !path.isEmpty() && links::pathExtension(path).toLower() != u"orlop"_s &&
           links::isFolderPath(path);
}

}  // namespace

UnfoldedFolders::UnfoldedFolders(std::unique_ptr<AddressSource> rest, FileCollector files)
    : rest_(std::move(rest)), files_(std::move(files)) {}

std::optional<platform::Url> UnfoldedFolders::next() {
    while (position_ >= files_.urls().size()) {
        std::optional<platform::Url> url = rest_->next();
        if (!url || !isFolder(*url)) {
            return url;
        }
        wantsMore_ = wantsMore_ && files_.getFileURLs({url->filePath()});
    }
    return files_.urls()[position_++];
}

namespace {

std::unique_ptr<AddressSource> addressesOf(links::URLCandidates candidates, const Downloads& queue,
                                           const platform::UserDefaults& defaults,
                                           RefusedTexts refused) {
    const bool checks = defaults.get(settings::instantDuplicateCheck);
    return std::make_unique<TextAddresses>(std::move(candidates),
                                           checks ? KnownAddresses(queue) : KnownAddresses(),
                                           std::move(refused));
}

}  // namespace

std::unique_ptr<AddressSource> addressesInText(const QString& text, const Downloads& queue,
                                               const platform::UserDefaults& defaults,
                                               RefusedTexts refused) {
    const bool skips = defaults.get(links::settings::skipRedirectingServices);
    return addressesOf(links::URLCandidates::fromString(text, skips), queue, defaults,
                       std::move(refused));
}

std::unique_ptr<AddressSource> addressesInCollection(const QStringList& items,
                                                     const Downloads& queue,
                                                     const platform::UserDefaults& defaults,
                                                     RefusedTexts refused) {
    const bool skips = defaults.get(links::settings::skipRedirectingServices);
    return addressesOf(links::URLCandidates::fromCollection(items, skips), queue, defaults,
                       std::move(refused));
}

}  // namespace app
