#include "app/intake/address_source.h"

#include <utility>

#include "app/intake/series_gate.h"
#include "app/settings.h"
#include "links/paths/folders.h"
#include "links/paths/path_components.h"
#include "links/settings.h"
#include "links/text/localization.h"
#include "platform/base/log.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

ListedAddresses::ListedAddresses(std::vector<platform::Url> urls) : urls_(std::move(urls)) {}

std::optional<platform::Url> ListedAddresses::next() {
    return position_ < urls_.size() ? std::optional(std::move(urls_[position_++])) : std::nullopt;
}

UnknownAddresses::UnknownAddresses(std::unique_ptr<AddressSource> rest, KnownAddresses known,
                                   SharedIntakeNotes notes)
    : rest_(std::move(rest)), known_(std::move(known)), notes_(std::move(notes)) {}

std::optional<platform::Url> UnknownAddresses::next() {
    while (std::optional<platform::Url> url = rest_->next()) {
        const QString address = links::comparisonURLString(url->absoluteString());
        const engine::DownloadPtr download = known_.find(address);
        if (!download) {
            return url;
        }
        platform::debugLog(
            [&] { return links::filledFormat(u"skipping duplicate: %@"_s, {address}); });
        notes_->noteKnown(download);
    }
    return {};
}

AddressesInTexts::AddressesInTexts(const QStringList& texts, bool skipRedirectingServices,
                                   links::SeriesGate gate, SharedIntakeNotes notes)
    : addresses_(texts, skipRedirectingServices, std::move(gate)), notes_(std::move(notes)) {}

std::optional<platform::Url> AddressesInTexts::next() {
    while (std::optional<links::TextFinding> finding = addresses_.next()) {
        if (finding->address) {
            return std::move(finding->address);
        }
        notes_->noteRefused(finding->refused);
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

UnfoldedFolders::UnfoldedFolders(std::unique_ptr<AddressSource> rest, FileCollector files,
                                 SharedIntakeNotes notes)
    : rest_(std::move(rest)), files_(std::move(files)), notes_(std::move(notes)) {}

std::optional<platform::Url> UnfoldedFolders::next() {
    while (position_ >= files_.urls().size()) {
        std::optional<platform::Url> url = rest_->next();
        if (!url || !isFolder(*url)) {
            return url;
        }
        if (wantsMore_ && !files_.getFileURLs({url->filePath()})) {
            wantsMore_ = false;
            if (files_.hasTooMany()) {
                notes_->noteProblem(tooManyFilesText());
            }
        }
    }
    return files_.urls()[position_++];
}

std::unique_ptr<AddressSource> newAddresses(std::unique_ptr<AddressSource> rest,
                                            const Downloads& queue,
                                            const platform::UserDefaults& defaults,
                                            SharedIntakeNotes notes) {
    if (!defaults.get(settings::instantDuplicateCheck)) {
        return rest;
    }
    return std::make_unique<UnknownAddresses>(std::move(rest), KnownAddresses(queue),
                                              std::move(notes));
}

std::unique_ptr<AddressSource> newAddressesInTexts(const QStringList& texts, const Downloads& queue,
                                                   const platform::UserDefaults& defaults,
                                                   Questions& questions,
                                                   const SharedIntakeNotes& notes) {
    const bool skips = defaults.get(links::settings::skipRedirectingServices);
    return newAddresses(std::make_unique<AddressesInTexts>(
                            texts, skips, seriesGate(questions, defaults, notes), notes),
                        queue, defaults, notes);
}

}  // namespace app
