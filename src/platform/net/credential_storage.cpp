#include "platform/net/credential_storage.h"

#include <atomic>
#include <map>
#include <mutex>

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

class MemoryCredentialStorage final : public CredentialStorage {
public:
    void find(const ProtectionSpace& space, Found found) override { found(lookUp(space)); }

    void save(const ProtectionSpace& space, const HTTPCredentials& credentials) override {
        const std::scoped_lock guard(lock_);
        credentials_[secretKey(space)] = credentials;
    }

    void remove(const ProtectionSpace& space) override {
        const std::scoped_lock guard(lock_);
        credentials_.erase(secretKey(space));
    }

private:
    std::optional<HTTPCredentials> lookUp(const ProtectionSpace& space) {
        const std::scoped_lock guard(lock_);
        const auto entry = credentials_.find(secretKey(space));
        return entry != credentials_.end() ? std::optional(entry->second) : std::nullopt;
    }

    std::mutex lock_;  ///< Guards credentials_.
    std::map<QString, HTTPCredentials> credentials_;
};

std::atomic<CredentialStorage*> installedCredentials = nullptr;

}  // namespace

bool ProtectionSpace::receivesCredentialSecurely(const QString& authenticationScheme) const {
    const bool isEncrypted = !isProxy && protocol.compare("https"_L1, Qt::CaseInsensitive) == 0;
    return isEncrypted || authenticationScheme == authenticationSchemeDigest ||
           authenticationScheme == authenticationSchemeNTLM ||
           authenticationScheme == authenticationSchemeNegotiate;
}

QString secretKey(const ProtectionSpace& space) {
    const QString kind = space.isProxy ? u"proxy"_s : space.protocol.toLower();
    return u"%1://%2:%3 %4"_s.arg(kind, space.host.toLower(), QString::number(space.port),
                                  space.realm);
}

std::unique_ptr<CredentialStorage> makeMemoryCredentialStorage() {
    return std::make_unique<MemoryCredentialStorage>();
}

CredentialStorage& sharedCredentialStorage() {
    static MemoryCredentialStorage fallback;
    CredentialStorage* const installed = installedCredentials;
    return installed != nullptr ? *installed : fallback;
}

void installSharedCredentialStorage(CredentialStorage* storage) {
    installedCredentials = storage;
}

}  // namespace platform
