#pragma once

#include <QCryptographicHash>
#include <QString>
#include <atomic>
#include <memory>

#include "engine/transfer/file_sum.h"

namespace platform {
class Disks;
}

namespace engine {

/// Adds a file up while it grows, so that little is left to read when it is whole. It reads behind
/// those who write, on another thread than theirs, and so adds up what lies in the file and not
/// what was meant to. Main thread.
class RunningSum {
public:
    explicit RunningSum(platform::Disks& disks) : disks_(disks) {}
    ~RunningSum() { forget(); }
    RunningSum(const RunningSum&) = delete;
    RunningSum& operator=(const RunningSum&) = delete;

    /// The first `length` bytes of the file are there to stay. With other bytes than those that it
    /// was told of before, it begins again.
    void follow(const QString& path, QCryptographicHash::Algorithm algorithm, qint64 length);
    /// From where on it is worth while to call `follow` again.
    [[nodiscard]] qint64 nextLength() const;
    /// What was read may be written anew.
    void forget();
    /// Lets somebody else read on, and forgets it. Null: it has read nothing.
    [[nodiscard]] std::shared_ptr<SumReader> take();

private:
    struct Reading;
    void readOn();

    platform::Disks& disks_;
    std::shared_ptr<Reading> reading_;  ///< Null: nothing has been followed yet.
};

}  // namespace engine
