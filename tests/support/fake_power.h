#pragma once

#include "platform/session/power.h"

namespace support {

/// A machine that sleeps, wakes and has its clock set when a test says so.
class FakePower final : public platform::Power {
public:
    Observers observers;
    bool grants = true, preventsIdleSleep = false;
    int sleepRequests = 0, shutDownRequests = 0;

    void observe(Observers newObservers) override { observers = std::move(newObservers); }
    void setPreventsIdleSleep(bool prevents) override { preventsIdleSleep = prevents; }
    void requestSleep(Answer answer) override {
        ++sleepRequests;
        answer(grants);
    }
    void requestShutDown(Answer answer) override {
        ++shutDownRequests;
        answer(grants);
    }
};

}  // namespace support
