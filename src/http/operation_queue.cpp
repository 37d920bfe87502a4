#include "http/operation_queue.h"

#include <algorithm>
#include <map>
#include <utility>

namespace http {

void Operation::addDependency(std::shared_ptr<Operation> other) {
    dependencies_.push_back(std::move(other));
}

bool Operation::isFinished() const {
    const std::scoped_lock guard(finishLock_);
    return finished_;
}

void Operation::announceFinished() {
    std::vector<std::function<void()>> observers;
    {
        const std::scoped_lock guard(finishLock_);
        if (std::exchange(finished_, true))
            return;
        observers.swap(finishObservers_);
    }
    const auto alive = weak_from_this().lock();
    for (const auto& observer : observers)
        observer();
}

bool Operation::observeFinish(std::function<void()> observer) {
    const std::scoped_lock guard(finishLock_);
    if (finished_)
        return false;
    finishObservers_.push_back(std::move(observer));
    return true;
}

/// Outlives the queue for as long as operations that run may report to it.
class OperationQueue::Core : public std::enable_shared_from_this<Core> {
public:
    void add(const std::shared_ptr<Operation>& operation);
    void startEligible();
    void removeAll();
    [[nodiscard]] std::vector<std::shared_ptr<Operation>> operations() const;
    [[nodiscard]] std::size_t count() const;

    mutable std::mutex lock;  ///< Guards all fields of this class.
    int maximum = 4;
    bool suspended = false;

private:
    using Rank = std::pair<int, std::uint64_t>;

    void dependencyDidFinish(Operation* operation);
    void operationDidFinish(const Operation* operation);
    [[nodiscard]] std::shared_ptr<Operation> takeNext();

    struct Blocked {
        std::shared_ptr<Operation> operation;
        std::size_t dependencies = 0;
        Rank rank;
    };

    std::map<Rank, std::shared_ptr<Operation>> ready_;
    std::map<const Operation*, Blocked> blocked_;
    std::map<const Operation*, std::shared_ptr<Operation>> running_;
    std::uint64_t sequence_ = 0;
    bool isStarting_ = false;
};

void OperationQueue::Core::add(const std::shared_ptr<Operation>& operation) {
    {
        const std::scoped_lock guard(lock);
        // One more than there are holds the operation back until all have been looked at.
        blocked_[operation.get()] = {operation, operation->dependencies_.size() + 1,
                                     Rank{-operation->queuePriority(), sequence_++}};
    }
    Operation* const waiting = operation.get();
    // Let go here, because an operation may hold the one that depends on it.
    const auto dependencies = std::exchange(operation->dependencies_, {});
    for (const auto& dependency : dependencies) {
        const bool observed = dependency->observeFinish([core = weak_from_this(), waiting] {
            if (const auto self = core.lock())
                self->dependencyDidFinish(waiting);
        });
        if (!observed)
            dependencyDidFinish(waiting);
    }
    dependencyDidFinish(waiting);
}

void OperationQueue::Core::dependencyDidFinish(Operation* operation) {
    {
        const std::scoped_lock guard(lock);
        const auto blocked = blocked_.find(operation);
        if (blocked == blocked_.end() || --blocked->second.dependencies > 0)
            return;
        ready_.emplace(blocked->second.rank, std::move(blocked->second.operation));
        blocked_.erase(blocked);
    }
    startEligible();
}

void OperationQueue::Core::operationDidFinish(const Operation* operation) {
    std::shared_ptr<Operation> released;
    {
        const std::scoped_lock guard(lock);
        const auto running = running_.find(operation);
        if (running == running_.end())
            return;
        released = std::move(running->second);
        running_.erase(running);
    }
    startEligible();
}

std::shared_ptr<Operation> OperationQueue::Core::takeNext() {
    if (suspended || ready_.empty() || running_.size() >= static_cast<std::size_t>(maximum))
        return nullptr;
    auto operation = std::move(ready_.begin()->second);
    ready_.erase(ready_.begin());
    running_.emplace(operation.get(), operation);
    return operation;
}

void OperationQueue::Core::startEligible() {
    std::unique_lock guard(lock);
    // An operation that finishes while it starts comes back here: the loop below goes on for it.
    if (isStarting_)
        return;
    isStarting_ = true;
    while (const auto operation = takeNext()) {
        guard.unlock();
        const bool observed =
            operation->observeFinish([core = weak_from_this(), key = operation.get()] {
                if (const auto self = core.lock())
                    self->operationDidFinish(key);
            });
        if (observed)
            operation->start();
        else
            operationDidFinish(operation.get());
        guard.lock();
    }
    isStarting_ = false;
}

void OperationQueue::Core::removeAll() {
    std::map<Rank, std::shared_ptr<Operation>> ready;
    std::map<const Operation*, Blocked> blocked;
    std::map<const Operation*, std::shared_ptr<Operation>> running;
    const std::scoped_lock guard(lock);
    ready.swap(ready_);
    blocked.swap(blocked_);
    running.swap(running_);
}

std::vector<std::shared_ptr<Operation>> OperationQueue::Core::operations() const {
    const std::scoped_lock guard(lock);
    std::vector<std::shared_ptr<Operation>> all;
    all.reserve(running_.size() + ready_.size() + blocked_.size());
    for (const auto& [key, operation] : running_)
        all.push_back(operation);
    for (const auto& [rank, operation] : ready_)
        all.push_back(operation);
    for (const auto& [key, blocked] : blocked_)
        all.push_back(blocked.operation);
    return all;
}

std::size_t OperationQueue::Core::count() const {
    const std::scoped_lock guard(lock);
    return running_.size() + ready_.size() + blocked_.size();
}

OperationQueue::OperationQueue() : core_(std::make_shared<Core>()) {}

OperationQueue::~OperationQueue() = default;

void OperationQueue::addOperation(const std::shared_ptr<Operation>& operation) {
    core_->add(operation);
}

void OperationQueue::setMaxConcurrentOperationCount(int count) {
    {
        const std::scoped_lock guard(core_->lock);
        core_->maximum = std::max(1, count);
    }
    core_->startEligible();
}

int OperationQueue::maxConcurrentOperationCount() const {
    const std::scoped_lock guard(core_->lock);
    return core_->maximum;
}

void OperationQueue::changeMaxConcurrentOperationCount(int difference) {
    {
        const std::scoped_lock guard(core_->lock);
        core_->maximum = std::max(1, core_->maximum + difference);
    }
    core_->startEligible();
}

void OperationQueue::setSuspended(bool suspended) {
    {
        const std::scoped_lock guard(core_->lock);
        core_->suspended = suspended;
    }
    core_->startEligible();
}

bool OperationQueue::isSuspended() const {
    const std::scoped_lock guard(core_->lock);
    return core_->suspended;
}

void OperationQueue::cancelAllOperations() {
    for (const auto& operation : operations())
        operation->cancel();
}

void OperationQueue::removeAllOperations() {
    core_->removeAll();
}

std::vector<std::shared_ptr<Operation>> OperationQueue::operations() const {
    return core_->operations();
}

std::size_t OperationQueue::operationCount() const {
    return core_->count();
}

}  // namespace http
