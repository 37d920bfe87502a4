#pragma once

#include <QString>
#include <optional>

#include "engine/queue/download_queue.h"
#include "platform/net/url.h"

namespace platform {
class UserDefaults;
}

namespace app {

/// What a text would come to if it was taken in now.
struct TextPreview {
    qsizetype addresses = 0;  ///< All of them, those in the list included.
    qsizetype known = 0;      ///< Those of them that would be left out, being in the list already.
    qsizetype refused = 0;    ///< Lines, or parts of lines, in which there is no address.
    bool isMore = false;      ///< There is more of it than was looked at.
    std::optional<platform::Url> only;  ///< If it is a single address.
};

/// Looks at a few thousand addresses at most. Main thread.
[[nodiscard]] TextPreview textPreview(const QString& text, const engine::Downloads& queue,
                                      const platform::UserDefaults& defaults);
/// In words, as in "12 addresses, 2 already in the list, 1 line not understood". Empty: there is
/// nothing.
[[nodiscard]] QString previewText(const TextPreview& preview);

}  // namespace app
