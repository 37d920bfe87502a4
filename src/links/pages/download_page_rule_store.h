#pragma once

#include <QString>
#include <QVariant>
#include <memory>
#include <optional>

#include "links/pages/download_page_rules.h"

namespace platform {
class UserDefaults;
}

namespace links {

/// The rules in force, from the setting "Download Page Rules". Main thread.
class DownloadPageRuleStore {
public:
    explicit DownloadPageRuleStore(platform::UserDefaults& defaults);

    /// Reads the setting at the first call and keeps what it says. Null: the text is no valid set
    /// of rules.
    [[nodiscard]] std::shared_ptr<const DownloadPageRules> downloadPageRules();
    /// The same for whoever asks about one address. Null also, and nothing is read, where the
    /// built-in rules hold and the address is none of theirs, as in nearly every run.
    [[nodiscard]] std::shared_ptr<const DownloadPageRules> rulesThatMayConcern(
        const platform::Url& url);

    /// The user's text, or that of a structure; the built-in one if there is none.
    [[nodiscard]] QString ruleText() const;
    /// What is in force from now on. Empty: the built-in text is.
    void setRuleText(const QString& text);
    /// The setting has been changed elsewhere: it is read again when rules are next asked for.
    void forgetRules() { rules_.reset(); }

private:
    [[nodiscard]] QVariant storedStructure() const;
    /// The user's. Empty: the user has written none.
    [[nodiscard]] QString storedText() const;
    [[nodiscard]] QVariant ruleObject() const;

    using Rules = std::shared_ptr<const DownloadPageRules>;

    platform::UserDefaults& defaults_;
    std::optional<Rules> rules_;  ///< Nothing: not read yet.
};

/// The rules of a program whose user has written none.
[[nodiscard]] QString defaultDownloadPageRuleText();

}  // namespace links
