#pragma once

#include <memory>
#include <vector>

#include "app/authentication/authentication_prompt.h"

namespace http {
class HTTPRequest;
}
namespace platform {
class UserDefaults;
}

namespace app {

/// Lets all requests that wait for a name and a password wait for one prompt, in their order, and
/// gives an answer to all that it may be meant for. Main thread.
class DQHTTPAuthenticationManager final : private AuthenticationPrompt::Client {
public:
    /// `prompt`: null where nobody can be asked; requests then go on without. It outlives this.
    DQHTTPAuthenticationManager(AuthenticationPrompt* prompt, platform::UserDefaults& defaults);
    ~DQHTTPAuthenticationManager();
    DQHTTPAuthenticationManager(const DQHTTPAuthenticationManager&) = delete;
    DQHTTPAuthenticationManager& operator=(const DQHTTPAuthenticationManager&) = delete;

    /// Ends by `retryUsingSuppliedCredentials` or `cancelAuthentication` of the request.
    void acquireAuthenticationForRequest(http::HTTPRequest& request);
    /// The request does not wait any more, if it did.
    void cancelAuthenticationForRequest(const http::HTTPRequest& request);

private:
    using Request = std::shared_ptr<http::HTTPRequest>;

    void applyCredentialsFromDialog(const AuthenticationAnswer& answer) override;
    void cancelDialog() override;

    [[nodiscard]] bool promptForNextAuthentication();
    void promptOrClose();
    void removePendingRequestAtIndex(std::size_t index);
    [[nodiscard]] AuthenticationQuestion question() const;

    AuthenticationPrompt* const _prompt;
    platform::UserDefaults& _defaults;
    std::vector<Request> _pendingRequests;  ///< The first is the one being asked about.
};

}  // namespace app
