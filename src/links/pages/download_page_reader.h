#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <stop_token>
#include <vector>

#include "platform/net/url.h"

namespace platform {
class RunLoop;
class ThreadPool;
}  // namespace platform

namespace links {

class DownloadPageRules;
class PageFetcher;

/// A page to be read, and all that its reading needs.
struct DownloadPageReading {
    platform::Url url;
    std::shared_ptr<const DownloadPageRules> rules;
    std::shared_ptr<PageFetcher> fetcher;
    /// The setting "Skip Redirecting Services".
    bool skipRedirectingServices = true;
    /// Nobody waits for the result any more.
    std::stop_token stop = {};
};

struct ExtractedLinks {
    /// Empty: a page could not be had, or nothing was found on the last ones.
    std::vector<platform::Url> urls;
    /// Of the first page that has one. Empty: none.
    QString title;
};

/// Follows the cascade of the page's rule from page to page to the real links. Blocks for the
/// fetches, one at a time. An address that no rule is for is its own only link. Any thread.
[[nodiscard]] ExtractedLinks URLsFromDownloadPageWithTitle(const DownloadPageReading& reading);

/// The same on a thread of `readers`. `completion` is posted to `loop`, which must live until then.
void readDownloadPageInBackground(DownloadPageReading reading, platform::ThreadPool& readers,
                                  platform::RunLoop& loop,
                                  std::function<void(ExtractedLinks)> completion);

}  // namespace links
