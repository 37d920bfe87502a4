#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <vector>

#include "platform/net/url.h"

namespace platform {
class RunLoop;
}

namespace links {

class DownloadPageRules;
class PageFetcher;

struct ExtractedLinks {
    /// Empty: a page could not be had, or nothing was found on the last ones.
    std::vector<platform::Url> urls;
    /// Of the first page that has one. Empty: none.
    QString title;
};

/// Follows the cascade of the rule for `url` from page to page to the real links. Blocks for the
/// fetches, one at a time. An address that no rule is for is its own only link. Any thread.
[[nodiscard]] ExtractedLinks URLsFromDownloadPageWithTitle(const platform::Url& url,
                                                           const DownloadPageRules& rules,
                                                           PageFetcher& fetcher,
                                                           bool skipRedirectingServices);

/// The same on a thread of the global pool, with redirecting services skipped as the setting says;
/// `completion` is posted to `loop`, which must live until then. Main thread.
void readDownloadPageInBackground(const platform::Url& url,
                                  std::shared_ptr<const DownloadPageRules> rules,
                                  std::shared_ptr<PageFetcher> fetcher, platform::RunLoop& loop,
                                  std::function<void(ExtractedLinks)> completion);

}  // namespace links
