#pragma once

#include <QString>

namespace app {

/// The claim to be the one process that works with the queue in a folder. It ends with the object
/// or the process, however that ends.
class InstanceLock {
public:
    InstanceLock() = default;
    ~InstanceLock();
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    enum class Claim {
        Owned,
        /// Another process has it.
        Taken,
        /// The folder cannot hold a lock; see `problem`.
        Impossible,
    };
    /// May be tried again when it was taken.
    [[nodiscard]] Claim claim(const QString& supportFolder);
    /// Why it was impossible, for people.
    [[nodiscard]] const QString& problem() const { return problem_; }

private:
    void release();

    int descriptor_ = -1;
    QString problem_;
};

}  // namespace app
