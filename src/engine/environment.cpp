#include "engine/environment.h"

#include <utility>

#include "http/http_request.h"

namespace engine {
namespace {

Environment& installedEnvironment() {
    static Environment installed;
    return installed;
}

}  // namespace

Environment::Environment()
    : acquireAuthentication([](http::HTTPRequest& request) { request.cancelAuthentication(); }) {}

const Environment& environment() {
    return installedEnvironment();
}

void installEnvironment(Environment newEnvironment) {
    installedEnvironment() = std::move(newEnvironment);
}

}  // namespace engine
