#pragma once

#include <QVariantMap>
#include <optional>

#include "platform/base/error.h"

namespace engine {

/// Why a download was at a stand when the queue was saved, so that its row can say so in the next
/// run, too: there it is paused, for the user to decide.
struct PastFailure {
    bool isForGood = false;                ///< It was given up, not only interrupted.
    std::optional<platform::Error> error;  ///< Nothing: the server's status says all.

    [[nodiscard]] QVariantMap archive() const;
    /// Of anything that stands in a file.
    [[nodiscard]] static PastFailure fromArchive(const QVariantMap& archive);
};

}  // namespace engine
