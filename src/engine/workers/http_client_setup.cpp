#include "engine/workers/http_client_setup.h"

#include "engine/settings.h"
#include "engine/workers/throttle.h"
#include "http/http_request.h"

namespace engine {

void configureHTTPClient(const platform::UserDefaults& defaults, const Throttle& throttle) {
    http::HTTPRequest::sharedQueue().setMaxConcurrentOperationCount(
        static_cast<int>(defaults.get(settings::maximumConcurrentOperations)));
    // Workers name the program themselves, unless the user wants no name to be sent.
    http::HTTPRequest::setDefaultUserAgentString({});
    throttle.apply();
}

}  // namespace engine
