#include "http/request/authentication.h"

#include "http/http_request_error.h"
#include "http/request/request_run.h"

namespace http {

void Authentication::attemptToApplyCredentialsAndResume() {
    _run.cancelLoad();
    _run.failWithError(authenticationError());
}

}  // namespace http
