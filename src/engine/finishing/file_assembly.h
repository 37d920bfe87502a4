#pragma once

#include <QString>
#include <atomic>
#include <optional>
#include <vector>

#include "platform/base/error.h"

namespace platform {
class Disk;
}

namespace engine {

/// The first bytes of a file, `length` of them.
struct FilePiece {
    QString path;
    qint64 length = 0;
};

struct AssemblyResult {
    bool isCancelled = false;
    std::optional<platform::Error> error;
};

/// Appends the pieces to the first one, and waits until all is on the disk. A piece is deleted once
/// its bytes are safe in the first file, so that room for one piece is enough. Whenever it is cut
/// short, the first file holds true bytes from the beginning on, and no byte is lost. `disk` is
/// where they lie, and has the space of deleted pieces freed without anybody waiting. Any thread.
[[nodiscard]] AssemblyResult assembleFile(const std::vector<FilePiece>& pieces,
                                          const std::atomic<bool>& isCancelled,
                                          platform::Disk& disk);

}  // namespace engine
