#include "http/operation_queue.h"

#include <algorithm>
#include <map>
#include <utility>

namespace http {

void Operation::addDependency(std::shared_ptr<Operation> other) {
    _dependencies.push_back(std::move(other));
}

bool Operation::isFinished() const {
    const std::scoped_lock guard(_finishLock);
    return _finished;
}

void Operation::announceFinished() {
    std::vector<std::function<void()>> observers;
    {
        const std::scoped_lock guard(_finishLock);
        if (std::exchange(_finished, true))
            return;
        observers.swap(_finishObservers);
    }
    const auto alive = weak_from_this().lock();
    for (const auto& observer : observers)
        observer();
}

bool Operation::observeFinish(std::function<void()> observer) {
    const std::scoped_lock guard(_finishLock);
    if (_finished)
        return false;
    _finishObservers.push_back(std::move(observer));
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

    std::map<Rank, std::shared_ptr<Operation>> _ready;
    std::map<const Operation*, Blocked> _blocked;
    std::map<const Operation*, std::shared_ptr<Operation>> _running;
    std::uint64_t _sequence = 0;
    bool _isStarting = false;
};

void OperationQueue::Core::add(const std::shared_ptr<Operation>& operation) {
    {
        const std::scoped_lock guard(lock);
        // One more than there are holds the operation back until all have been looked at.
        _blocked[operation.get()] = {operation, operation->_dependencies.size() + 1,
                                     Rank{-operation->queuePriority(), _sequence++}};
    }
    Operation* const waiting = operation.get();
    // Let go here, because an operation may hold the one that depends on it.
    const auto dependencies = std::exchange(operation->_dependencies, {});
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
        const auto blocked = _blocked.find(operation);
        if (blocked == _blocked.end() || --blocked->second.dependencies > 0)
            return;
        _ready.emplace(blocked->second.rank, std::move(blocked->second.operation));
        _blocked.erase(blocked);
    }
    startEligible();
}

void OperationQueue::Core::operationDidFinish(const Operation* operation) {
    std::shared_ptr<Operation> released;
    {
        const std::scoped_lock guard(lock);
        const auto running = _running.find(operation);
        if (running == _running.end())
            return;
        released = std::move(running->second);
        _running.erase(running);
    }
    startEligible();
}

std::shared_ptr<Operation> OperationQueue::Core::takeNext() {
    if (suspended || _ready.empty() || _running.size() >= static_cast<std::size_t>(maximum))
        return nullptr;
    auto operation = std::move(_ready.begin()->second);
    _ready.erase(_ready.begin());
    _running.emplace(operation.get(), operation);
    return operation;
}

void OperationQueue::Core::startEligible() {
    std::unique_lock guard(lock);
    // An operation that finishes while it starts comes back here: the loop below goes on for it.
    if (_isStarting)
        return;
    _isStarting = true;
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
    _isStarting = false;
}

void OperationQueue::Core::removeAll() {
    std::map<Rank, std::shared_ptr<Operation>> ready;
    std::map<const Operation*, Blocked> blocked;
    std::map<const Operation*, std::shared_ptr<Operation>> running;
    const std::scoped_lock guard(lock);
    ready.swap(_ready);
    blocked.swap(_blocked);
    running.swap(_running);
}

std::vector<std::shared_ptr<Operation>> OperationQueue::Core::operations() const {
    const std::scoped_lock guard(lock);
    std::vector<std::shared_ptr<Operation>> all;
    all.reserve(_running.size() + _ready.size() + _blocked.size());
    for (const auto& [key, operation] : _running)
        all.push_back(operation);
    for (const auto& [rank, operation] : _ready)
        all.push_back(operation);
    for (const auto& [key, blocked] : _blocked)
        all.push_back(blocked.operation);
    return all;
}

std::size_t OperationQueue::Core::count() const {
    const std::scoped_lock guard(lock);
    return _running.size() + _ready.size() + _blocked.size();
}

OperationQueue::OperationQueue() : _core(std::make_shared<Core>()) {}

OperationQueue::~OperationQueue() = default;

void OperationQueue::addOperation(std::shared_ptr<Operation> operation) {
    _core->add(operation);
}

void OperationQueue::setMaxConcurrentOperationCount(int count) {
    {
        const std::scoped_lock guard(_core->lock);
        _core->maximum = std::max(1, count);
    }
    _core->startEligible();
}

int OperationQueue::maxConcurrentOperationCount() const {
    const std::scoped_lock guard(_core->lock);
    return _core->maximum;
}

void OperationQueue::changeMaxConcurrentOperationCount(int difference) {
    {
        const std::scoped_lock guard(_core->lock);
        _core->maximum = std::max(1, _core->maximum + difference);
    }
    _core->startEligible();
}

void OperationQueue::setSuspended(bool suspended) {
    {
        const std::scoped_lock guard(_core->lock);
        _core->suspended = suspended;
    }
    _core->startEligible();
}

bool OperationQueue::isSuspended() const {
    const std::scoped_lock guard(_core->lock);
    return _core->suspended;
}

void OperationQueue::cancelAllOperations() {
    for (const auto& operation : operations())
        operation->cancel();
}

void OperationQueue::removeAllOperations() {
    _core->removeAll();
}

std::vector<std::shared_ptr<Operation>> OperationQueue::operations() const {
    return _core->operations();
}

std::size_t OperationQueue::operationCount() const {
    return _core->count();
}

}  // namespace http
