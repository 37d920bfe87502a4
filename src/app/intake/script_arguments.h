#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <optional>

namespace app {

/// What a script or a browser says beside the addresses; each may be missing.
struct ScriptArguments {
    QString toPosixPath;  ///< A folder, or the file for the first address.
    QString byPostingData;
    std::optional<QString> withReferrer, posingAsUserAgent, usingCookies;
    /// Nobody who holds a key means these addresses by it.
    bool isFromProgram = false;
    /// Not for scripts: the download pages that led to the addresses.
    QStringList downloadPageChain = {};
    /// Not for scripts: whether they are queued at once. Nothing: as the settings say.
    std::optional<bool> startsAtOnce = {};

    [[nodiscard]] bool isEmpty() const;
    /// As the "Request" of a download's settings. Empty: an ordinary request.
    [[nodiscard]] QVariantMap request() const;
};

/// From a dictionary with these names as keys.
[[nodiscard]] ScriptArguments scriptArgumentsFromDictionary(const QVariantMap& dictionary);

}  // namespace app
