#pragma once

#include <QVariant>

namespace engine {

/// The user's rules for what is downloaded from where. Main thread.
class Rules {
public:
    virtual ~Rules() = default;

    /// In their order: dictionaries with "Hosts", "Extensions" (lists of strings), "Downloads
    /// Folder" and "Application" (strings), each of them optional.
    [[nodiscard]] virtual const QVariantList& specialCases() const = 0;
};

}  // namespace engine
