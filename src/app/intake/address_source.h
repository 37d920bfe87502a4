#pragma once

#include <QString>
#include <memory>
#include <optional>
#include <vector>

#include "app/intake/file_collector.h"
#include "app/intake/intake_notes.h"
#include "app/intake/known_addresses.h"
#include "links/recognition/text_addresses.h"
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
    [[nodiscard]] std::size_t size() const { return urls_.size(); }

private:
    std::vector<platform::Url> urls_;
    std::size_t position_ = 0;
};

/// The addresses of another source without those that the queue as it stood has already, which
/// `notes` hears of.
class UnknownAddresses final : public AddressSource {
public:
    UnknownAddresses(std::unique_ptr<AddressSource> rest, KnownAddresses known,
                     SharedIntakeNotes notes);
    [[nodiscard]] std::optional<platform::Url> next() override;

private:
    std::unique_ptr<AddressSource> rest_;
    KnownAddresses known_;
    SharedIntakeNotes notes_;
};

/// The whole addresses in texts; `notes` hears of everything else.
class AddressesInTexts final : public AddressSource {
public:
    AddressesInTexts(const QStringList& texts, bool skipRedirectingServices, links::SeriesGate gate,
                     SharedIntakeNotes notes);
    [[nodiscard]] std::optional<platform::Url> next() override;

private:
    links::TextAddresses addresses_;
    SharedIntakeNotes notes_;
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
    UnfoldedFolders(std::unique_ptr<AddressSource> rest, FileCollector files,
                    SharedIntakeNotes notes);
    [[nodiscard]] std::optional<platform::Url> next() override;

private:
    std::unique_ptr<AddressSource> rest_;
    FileCollector files_;
    SharedIntakeNotes notes_;
    std::size_t position_ = 0;
    bool wantsMore_ = true;
};

/// The addresses of `rest` that are new to the queue as it stands, if the settings want them to be.
[[nodiscard]] std::unique_ptr<AddressSource> newAddresses(std::unique_ptr<AddressSource> rest,
                                                          const Downloads& queue,
                                                          const platform::UserDefaults& defaults,
                                                          SharedIntakeNotes notes);
/// The whole addresses in texts, line by line, that are new to the queue likewise. Before a very
/// long series of them the user is asked.
[[nodiscard]] std::unique_ptr<AddressSource> newAddressesInTexts(
    const QStringList& texts, const Downloads& queue, const platform::UserDefaults& defaults,
    Questions& questions, const SharedIntakeNotes& notes);

}  // namespace app
