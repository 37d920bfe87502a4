#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace http {

class OperationQueue;

/// Something that an OperationQueue starts and that says itself when it has finished. Any thread.
class Operation : public std::enable_shared_from_this<Operation> {
public:
    virtual ~Operation() = default;

    /// Begins and returns at once; the operation later finishes, whatever happens, also when it
    /// has been cancelled before. Called with none of the queue's locks held.
    virtual void start() = 0;
    virtual void cancel() = 0;

    /// Set before the operation is added: it starts only after `other` has finished.
    void addDependency(std::shared_ptr<Operation> other);
    /// Set before the operation is added: higher ones start first; 0 at first.
    void setQueuePriority(int priority) { queuePriority_ = priority; }
    [[nodiscard]] int queuePriority() const { return queuePriority_; }
    [[nodiscard]] bool isFinished() const;

protected:
    /// Says that the operation is over. Only the first call counts.
    void announceFinished();

private:
    friend class OperationQueue;

    /// False: it has finished already, and `observer` is dropped.
    [[nodiscard]] bool observeFinish(std::function<void()> observer);

    int queuePriority_ = 0;
    std::vector<std::shared_ptr<Operation>> dependencies_;
    mutable std::mutex finishLock_;  ///< Guards the two below.
    bool finished_ = false;
    std::vector<std::function<void()>> finishObservers_;
};

/// Starts operations, the higher priority first and else in the order of adding, and never runs
/// more than so many at once. Owns each until it has finished. Any thread; operations start on
/// whatever thread made room for them.
class OperationQueue {
public:
    OperationQueue();
    virtual ~OperationQueue();
    OperationQueue(const OperationQueue&) = delete;
    OperationQueue& operator=(const OperationQueue&) = delete;

    virtual void addOperation(const std::shared_ptr<Operation>& operation);

    /// At least 1; 4 at first. Lowering it stops nothing that runs.
    void setMaxConcurrentOperationCount(int count);
    [[nodiscard]] int maxConcurrentOperationCount() const;
    /// Adds to the count in one step.
    void changeMaxConcurrentOperationCount(int difference);

    /// A suspended queue starts nothing.
    void setSuspended(bool suspended);
    [[nodiscard]] bool isSuspended() const;

    /// Calls `cancel` of all, waiting ones included; each still finishes in its turn.
    virtual void cancelAllOperations();

    /// Forgets all without a word to them.
    void removeAllOperations();

    /// Waiting and running ones, in no particular order.
    [[nodiscard]] std::vector<std::shared_ptr<Operation>> operations() const;
    [[nodiscard]] std::size_t operationCount() const;

private:
    class Core;
    std::shared_ptr<Core> core_;
};

}  // namespace http
