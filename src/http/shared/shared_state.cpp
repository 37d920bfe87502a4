#include "http/shared/shared_state.h"

#include <QLocale>
#include <cstdlib>

#include "http/content/user_agent.h"
#include "http/shared/transfer_loop.h"

namespace http {

platform::Seconds RequestDefaults::timeOutSeconds() const {
    const std::scoped_lock guard(lock_);
    return timeOutSeconds_;
}

void RequestDefaults::setTimeOutSeconds(platform::Seconds seconds) {
    const std::scoped_lock guard(lock_);
    timeOutSeconds_ = seconds;
}

QString RequestDefaults::userAgentString() {
    const std::scoped_lock guard(lock_);
    if (!userAgentString_)
        userAgentString_ = userAgentForProgram(currentProgramIdentity(), QLocale().name());
    return *userAgentString_;
}

void RequestDefaults::setUserAgentString(const QString& text) {
    const std::scoped_lock guard(lock_);
    userAgentString_ = text;
}

std::shared_ptr<ResponseCache> RequestDefaults::cache() const {
    const std::scoped_lock guard(lock_);
    return cache_;
}

void RequestDefaults::setCache(std::shared_ptr<ResponseCache> cache) {
    const std::scoped_lock guard(lock_);
    cache_ = std::move(cache);
}

SharedState::SharedState(platform::Clock& theClock)
    : clock(theClock),
      bandwidth(theClock),
      connections(theClock),
      thread(theClock, bandwidth, connections) {}

namespace {

struct Installed {
    std::mutex lock;  ///< Guards state.
    std::shared_ptr<SharedState> state;
};

Installed& installed() {
    static Installed instance;
    return instance;
}

}  // namespace

std::shared_ptr<SharedState> SharedState::current() {
    const std::scoped_lock guard(installed().lock);
    if (installed().state == nullptr)
        std::abort();  // No HTTPSession.
    return installed().state;
}

void SharedState::install(std::shared_ptr<SharedState> state) {
    const std::scoped_lock guard(installed().lock);
    installed().state = std::move(state);
}

}  // namespace http
