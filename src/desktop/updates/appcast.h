#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace desktop {

/// Whether an Ed25519 signature (RFC 8032; 64 bytes, here as Base64 with or without line breaks) of
/// these bytes was made with the private half of the key (32 bytes).
[[nodiscard]] bool isSignedBy(const QByteArray& bytes, const QByteArray& signature,
                              const QByteArray& key);

struct AppcastItem {
    QString version;
    /// Where people find it; empty: nothing is said of it.
    QString page;

    bool operator==(const AppcastItem&) const = default;
};

/// The newest of the items of a feed: RSS, in whose items `version` is a number such as "1.2.3" and
/// `link` a page. Nothing: there is none that can be read.
[[nodiscard]] std::optional<AppcastItem> newestItem(const QByteArray& feed);

/// As numbers between dots; what is missing counts as 0.
[[nodiscard]] bool isNewer(const QString& version, const QString& than);

}  // namespace desktop
