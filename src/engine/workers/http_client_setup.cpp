#include "engine/workers/http_client_setup.h"

#include "engine/admission/throttle.h"
#include "engine/settings.h"
#include "http/http_request.h"

namespace engine {

void configureHTTPClient() {
    const qint64 operations =
        platform::standardDefaults().get(settings::maximumConcurrentOperations);
    http::HTTPRequest::sharedQueue().setMaxConcurrentOperationCount(static_cast<int>(operations));
    // Workers name the program themselves, unless the user wants no name to be sent.
    http::HTTPRequest::setDefaultUserAgentString({});
    Throttle::apply();
}

}  // namespace engine
