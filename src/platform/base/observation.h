#pragma once

#include <memory>
#include <utility>

namespace platform {

/// Keeps an observer listening; it hears nothing any more once this has gone. What it listens to
/// may go first. Thread of what is observed.
class [[nodiscard]] Observation {
public:
    /// Of nothing.
    Observation() = default;
    /// `observer` is held weakly by whatever calls it.
    explicit Observation(std::shared_ptr<const void> observer) : observer_(std::move(observer)) {}
    ~Observation() = default;
    Observation(Observation&&) = default;
    Observation& operator=(Observation&&) = default;
    Observation(const Observation&) = delete;
    Observation& operator=(const Observation&) = delete;

private:
    std::shared_ptr<const void> observer_;
};

}  // namespace platform
