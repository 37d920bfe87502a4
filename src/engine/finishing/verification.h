#pragma once

#include <QString>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>

#include "engine/transfer/file_sum.h"

namespace engine {

class DownloadRecord;

/// Reads the whole file. For the threads of its disk.
[[nodiscard]] FileSum sumOfFile(const QString& path, QCryptographicHash::Algorithm algorithm,
                                const std::atomic<bool>& isCancelled);
/// The same, but goes on with what `begun` has read if that was of this very file. Null: nothing.
[[nodiscard]] FileSum sumOfFile(const QString& path, QCryptographicHash::Algorithm algorithm,
                                const std::shared_ptr<SumReader>& begun,
                                const std::atomic<bool>& isCancelled);
/// Keeps it with the file, in an extended attribute, for whoever comes to look at it later.
void writeChecksum(const Checksum& checksum, const QString& path);

/// Adds up a finished file in the background. Main thread.
class Verification {
public:
    Verification() = default;
    ~Verification() { cancel(); }
    Verification(const Verification&) = delete;
    Verification& operator=(const Verification&) = delete;

    /// In place of one that is under way. `completion` is called on the main loop, unless the
    /// record has gone by then or it was cancelled. What comes out is kept with the file.
    void begin(DownloadRecord& record, QCryptographicHash::Algorithm algorithm,
               std::function<void(const FileSum&)> completion);
    void cancel();

private:
    std::shared_ptr<std::atomic<bool>> isCancelled_;
};

}  // namespace engine
