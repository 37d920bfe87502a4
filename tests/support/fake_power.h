#pragma once

#include "platform/session/power.h"

namespace support {

/// A machine that sleeps, wakes and has its clock set when a test says so.
class FakePower final : public platform::Power {
public:
    Observers observers;
    bool grants = true;
    int sleepRequests = 0, shutDownRequests = 0;

    void observe(Observers newObservers) override { observers = std::move(newObservers); }
    bool requestSleep() override { return ++sleepRequests, grants; }
    bool requestShutDown() override { return ++shutDownRequests, grants; }
};

}  // namespace support
