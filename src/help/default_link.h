#pragma once

#include <QUrl>
#include <QVariant>
#include <optional>

#include "platform/base/user_defaults.h"

namespace help {

/// `x-tarnworks-help://default/KEY#VALUE`: a link of the manual that sets a setting, or removes it
/// if no value stands there.
struct DefaultLink {
    QString key;
    QVariant value;  ///< Invalid: to be removed.
};

inline constexpr auto helpScheme = "x-tarnworks-help";

/// Nothing: no such link, or one that does nothing (no "#", no key). "yes", "true", "no" and
/// "false" are truth values, "integer:5" and "double:0.5" numbers, all else is text.
[[nodiscard]] std::optional<DefaultLink> parsedDefaultLink(const QString& link);

/// "(No Value)", "Yes", "No" or the value itself.
[[nodiscard]] QString helpManagerDescriptionOrValue(const QVariant& value);

/// What a link did to the settings, so that it can be undone.
struct DefaultChange {
    QString key;
    QVariant before, after;  ///< Invalid: none.

    [[nodiscard]] bool didAnything() const { return before != after; }
    [[nodiscard]] QString message() const;
    [[nodiscard]] QString informativeText() const;
    [[nodiscard]] QString revertTitle() const;
    void revert(platform::UserDefaults& defaults) const;
};

[[nodiscard]] DefaultChange followed(const DefaultLink& link, platform::UserDefaults& defaults);

}  // namespace help
