#pragma once

#include <QHostAddress>
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

#include "platform/net/url.h"

namespace platform {

/// Hosts that are reached directly although there is a proxy: names with all below them
/// ("example.org", ".example.org", "*.example.org"), addresses and blocks of them ("10.0.0.0/8",
/// "::1"), each also with a port; "*" for all.
class ProxyExceptions {
public:
    ProxyExceptions() = default;
    /// What cannot be understood is left out.
    explicit ProxyExceptions(const QStringList& patterns);

    /// As in a variable of the environment, with commas or blanks between.
    [[nodiscard]] static ProxyExceptions fromText(const QString& text);

    [[nodiscard]] bool contain(const Url& url) const;

private:
    struct Pattern {
        QString domain;  ///< Lower case; empty: the block counts.
        QHostAddress block;
        int prefixLength = 0;
        std::optional<int> port;
    };

    void add(const QString& pattern);

    bool isEverything_ = false;
    std::vector<Pattern> patterns_;
};

}  // namespace platform
