#include "links/download_page_reader.h"

#include <QThreadPool>

#include "links/download_page_extraction.h"
#include "links/download_page_rules.h"
#include "links/page_fetcher.h"
#include "links/settings.h"
#include "platform/base/run_loop.h"
#include "platform/base/user_defaults.h"

namespace links {

ExtractedLinks URLsFromDownloadPageWithTitle(const platform::Url& url,
                                             const DownloadPageRules& rules, PageFetcher& fetcher,
                                             bool skipRedirectingServices) {
    const DownloadPageRule* rule = rules.ruleForURL(url);
    if (!rule)
        return {{url}, {}};
    return DownloadPageExtraction(*rule, fetcher, skipRedirectingServices).follow(url);
}

void readDownloadPageInBackground(const platform::Url& url,
                                  std::shared_ptr<const DownloadPageRules> rules,
                                  std::shared_ptr<PageFetcher> fetcher, platform::RunLoop& loop,
                                  std::function<void(ExtractedLinks)> completion) {
    const bool skips = platform::standardDefaults().get(settings::skipRedirectingServices);
    // What the caller gave is moved along, so that it also dies on the caller's thread.
    QThreadPool::globalInstance()->start([=, &loop, rules = std::move(rules),
                                          fetcher = std::move(fetcher),
                                          completion = std::move(completion)]() mutable {
        ExtractedLinks found = URLsFromDownloadPageWithTitle(url, *rules, *fetcher, skips);
        loop.post([completion = std::move(completion), found = std::move(found)]() mutable {
            completion(std::move(found));
        });
    });
}

}  // namespace links
