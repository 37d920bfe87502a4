#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace app {

/// What a clipboard or a drag offers.
struct Pasteboard {
    /// As its list of addresses (text/uri-list, RFC 2483).
    std::optional<QStringList> urls;
    std::optional<QString> text;

    /// Whether there is nothing in it but blanks.
    [[nodiscard]] bool isBlank() const;
    /// The texts to look for addresses in.
    [[nodiscard]] QStringList texts() const;
};

/// The addresses of a text/uri-list without its comments.
[[nodiscard]] QStringList addressesFromUriList(const QString& list);

}  // namespace app
