#pragma once

#include <QString>
#include <memory>
#include <optional>
#include <vector>

#include "app/intake/file_collector.h"
#include "app/intake/known_addresses.h"
#include "links/recognition/url_candidates.h"
#include "platform/base/user_defaults.h"
#include "platform/net/url.h"

namespace app {

/// Addresses that come one after the other, none of which is worked out before it is asked for.
class AddressSource {
public:
    virtual ~AddressSource() = default;
    /// Nothing: that was the last.
    [[nodiscard]] virtual std::optional<platform::Url> next() = 0;
};

/// Addresses that are there already.
class ListedAddresses final : public AddressSource {
public:
    explicit ListedAddresses(std::vector<platform::Url> urls);
    [[nodiscard]] std::optional<platform::Url> next() override;

private:
    std::vector<platform::Url> urls_;
    std::size_t position_ = 0;
};

/// Collects the texts of which no address could be made, the first thousand of them. Null: they are
/// dropped.
using RefusedTexts = std::shared_ptr<QStringList>;

/// The addresses in a text. What cannot be made an address is left out.
class TextAddresses final : public AddressSource {
public:
    /// Those in `known` are left out as well.
    TextAddresses(links::URLCandidates candidates, KnownAddresses known, RefusedTexts refused);
    [[nodiscard]] std::optional<platform::Url> next() override;

private:
    links::URLCandidates candidates_;
    KnownAddresses known_;
    RefusedTexts refused_;
};

/// Looks one address ahead of another source, so that it is known whether there is just one.
class SingleOrMany final : public AddressSource {
public:
    explicit SingleOrMany(std::unique_ptr<AddressSource> rest);
    /// Once the first has been asked for.
    [[nodiscard]] bool isSingle() const { return isSingle_; }
    [[nodiscard]] std::optional<platform::Url> next() override;

private:
    std::unique_ptr<AddressSource> rest_;
    std::optional<platform::Url> second_;
    bool hasBegun_ = false;
    bool isSingle_ = false;
};

/// The addresses of another source with the files in a folder in place of the folder, which may
/// mean a question to the user. Once the user had enough, further folders are left out.
class UnfoldedFolders final : public AddressSource {
public:
    UnfoldedFolders(std::unique_ptr<AddressSource> rest, FileCollector files);
    [[nodiscard]] std::optional<platform::Url> next() override;

private:
    std::unique_ptr<AddressSource> rest_;
    FileCollector files_;
    std::size_t position_ = 0;
    bool wantsMore_ = true;
};

/// The addresses in a text, line by line, without those that the queue as it stands has already,
/// if the settings say so.
[[nodiscard]] std::unique_ptr<AddressSource> addressesInText(const QString& text,
                                                             const Downloads& queue,
                                                             const platform::UserDefaults& defaults,
                                                             RefusedTexts refused = {});
/// The same for texts that are lines already.
[[nodiscard]] std::unique_ptr<AddressSource> addressesInCollection(
    const QStringList& items, const Downloads& queue, const platform::UserDefaults& defaults,
    RefusedTexts refused = {});

}  // namespace app
