#include "engine/environment.h"

#include "http/http_request.h"

namespace engine {

Environment::Environment()
    : acquireAuthentication([](http::HTTPRequest& request) { request.cancelAuthentication(); }) {}

}  // namespace engine
