#include "platform/net/cookie_storage.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "platform/net/cookie_file.h"
#include "platform/net/cookie_jar.h"

namespace platform {

namespace {

/// A jar behind a lock, and a thread that writes it, so that no request waits for a disk.
class FileCookieStorage final : public CookieStorage {
public:
    explicit FileCookieStorage(QString path) : path_(std::move(path)) {
        if (path_.isEmpty())
            return;
        std::optional<std::vector<Cookie>> cookies = readCookieFile(path_);
        if (!cookies)
            return;
        for (Cookie& cookie : *cookies)
            jar_.set(std::move(cookie));
        writer_ = std::thread([this] { write(); });
    }

    ~FileCookieStorage() override {
        if (!writer_.joinable())
            return;
        {
            const std::lock_guard guard(lock_);
            isEnding_ = true;
        }
        changed_.notify_one();
        writer_.join();
    }

    [[nodiscard]] std::vector<Cookie> cookiesForUrl(const Url& url) const override {
        const std::lock_guard guard(lock_);
        return jar_.cookiesFor(url);
    }

    void setCookies(const std::vector<Cookie>& cookies, const Url& url) override {
        const std::lock_guard guard(lock_);
        for (Cookie cookie : cookies) {
            if (cookie.domain.isEmpty())
                cookie.domain = url.host().toLower();
            if (url.hasScheme("https") || !jar_.hidesSecureCookie(cookie))
                noteChange(jar_.set(std::move(cookie)));
        }
    }

    void deleteCookie(const Cookie& cookie) override {
        const std::lock_guard guard(lock_);
        noteChange(jar_.remove(cookie));
    }

private:
    void noteChange(bool isWorthKeeping) {
        if (!isWorthKeeping)
            return;
        isChanged_ = true;
        changed_.notify_one();
    }

    void write() {
        constexpr std::chrono::seconds gathering(1);
        std::unique_lock guard(lock_);
        for (;;) {
            changed_.wait(guard, [this] { return isChanged_ || isEnding_; });
            // One writing for the many cookies of one page.
            changed_.wait_for(guard, gathering, [this] { return isEnding_; });
            if (std::exchange(isChanged_, false)) {
                const std::vector<Cookie> cookies = jar_.persistentCookies();
                guard.unlock();
                writeCookieFile(path_, cookies);
                guard.lock();
            } else if (isEnding_) {
                return;
            }
        }
    }

    const QString path_;
    mutable std::mutex lock_;  ///< Guards all that follows.
    mutable CookieJar jar_;    ///< Reading notes the use.
    bool isChanged_ = false;
    bool isEnding_ = false;
    std::condition_variable changed_;
    std::thread writer_;
};

std::atomic<CookieStorage*> installedCookies = nullptr;

}  // namespace

std::unique_ptr<CookieStorage> makeCookieStorage(const QString& path) {
    return std::make_unique<FileCookieStorage>(path);
}

CookieStorage& sharedCookieStorage() {
    static FileCookieStorage inMemory{QString()};
    CookieStorage* const storage = installedCookies;
    return storage != nullptr ? *storage : inMemory;
}

void installSharedCookieStorage(CookieStorage* storage) {
    installedCookies = storage;
}

}  // namespace platform
