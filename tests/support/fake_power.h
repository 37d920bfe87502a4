#pragma once

#include "platform/session/power.h"

namespace support {

/// A machine that sleeps, wakes and has its clock set when a test says so.
class FakePower final : public platform::Power {
public:
    Observers observers;
    bool grants = true, preventsIdleSleep = false, isOnline = true;
    int sleepRequests = 0, shutDownRequests = 0;

    [[nodiscard]] bool hasNetwork() const override { return isOnline; }
    void observe(Observers newObservers) override { observers = std::move(newObservers); }
    void setPreventsIdleSleep(bool prevents) override { preventsIdleSleep = prevents; }
    void requestSleep(Answer answer) override {
        ++sleepRequests;
        answer(grants ? QString() : QStringLiteral("no"));
    }
    /// What answers is kept here instead, if it is set.
    Answer* pendingShutDown = nullptr;
    void requestShutDown(Answer answer) override {
        ++shutDownRequests;
        if (pendingShutDown != nullptr) {
            *pendingShutDown = std::move(answer);
        } else {
            answer(grants ? QString() : QStringLiteral("no"));
        }
    }
};

}  // namespace support
