#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "links/pages/page_fetcher.h"

namespace platform {
class RunLoop;
}

namespace app {

/// Fetches web pages with the program's HTTP client, for readers on other threads.
class HTTPPageFetcher final : public links::PageFetcher {
public:
    /// The loop of the main thread, on which requests are made.
    explicit HTTPPageFetcher(platform::RunLoop& mainLoop);
    ~HTTPPageFetcher() override;

    /// Any thread but the main one.
    [[nodiscard]] links::FetchedPage fetchSynchronously(const links::PageRequest& request) override;

    /// Ends the fetches that go on, without data, and refuses all further ones. Main thread.
    void stop();

private:
    class Exchange;

    [[nodiscard]] std::shared_ptr<Exchange> newExchange(const links::PageRequest& request);

    platform::RunLoop& mainLoop_;
    std::mutex lock_;  ///< Guards all that follows.
    bool isStopped_ = false;
    std::vector<std::weak_ptr<Exchange>> exchanges_;
};

}  // namespace app
