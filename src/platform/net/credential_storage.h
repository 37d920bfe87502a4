#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <optional>

#include "platform/net/http_authentication.h"

namespace platform {

/// What a name and a password are for.
struct ProtectionSpace {
    QString host;
    int port = 0;      ///< The one written in the address; 0: none.
    QString protocol;  ///< The address's scheme. Of no account for a proxy.
    QString realm;     ///< Empty: none.
    bool isProxy = false;

    /// Whether a password cannot be read by whoever listens on the way.
    [[nodiscard]] bool receivesCredentialSecurely(const QString& authenticationScheme) const;
};

/// Names and passwords that are kept for good, one pair for each space. Any thread.
class CredentialStorage {
public:
    virtual ~CredentialStorage() = default;
    using Found = std::function<void(std::optional<HTTPCredentials>)>;

    /// Calls `found` once, on a thread of its own or at once: the user may have to unlock the
    /// storage first. Not after this object's end.
    virtual void find(const ProtectionSpace& space, Found found) = 0;
    virtual void save(const ProtectionSpace& space, const HTTPCredentials& credentials) = 0;
    virtual void remove(const ProtectionSpace& space) = 0;
};

/// For the life of the object.
[[nodiscard]] std::unique_ptr<CredentialStorage> makeMemoryCredentialStorage();

/// The desktop's secret store. What it does not take, for example because there is none, is kept
/// in memory; nothing is ever written to a file. The end waits shortly for what is being saved.
/// One for the process.
[[nodiscard]] std::unique_ptr<CredentialStorage> makeSecretServiceCredentialStorage();

/// The program's own, as installed by the composition root or by a test; an empty one in memory
/// until then.
[[nodiscard]] CredentialStorage& sharedCredentialStorage();
void installSharedCredentialStorage(CredentialStorage* storage);

/// What a secret store files a space under.
[[nodiscard]] QString secretKey(const ProtectionSpace& space);

}  // namespace platform
