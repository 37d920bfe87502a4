#pragma once

#include <QString>

namespace engine {
class DQDownload;
}

namespace app {

/// What a row says of its file's checksum, in a few words. Empty: nobody has looked at it.
[[nodiscard]] QString checksumText(const engine::DQDownload& download);
/// Both values in full, of a file that is another one than expected. Empty: it is not.
[[nodiscard]] QString wrongFileSentence(const engine::DQDownload& download);

}  // namespace app
