#include "links/pages/download_page_reader.h"

#include "links/pages/download_page_extraction.h"
#include "links/pages/download_page_rules.h"
#include "links/pages/page_fetcher.h"
#include "platform/base/run_loop.h"
#include "platform/base/thread_pool.h"

namespace links {

ExtractedLinks URLsFromDownloadPageWithTitle(const DownloadPageReading& reading) {
    const DownloadPageRule* rule = reading.rules ? reading.rules->ruleForURL(reading.url) : nullptr;
    if (!rule)
        return {{reading.url}, {}};
    return DownloadPageExtraction(*rule, reading).follow();
}

void readDownloadPageInBackground(DownloadPageReading reading, platform::ThreadPool& readers,
                                  platform::RunLoop& loop,
                                  std::function<void(ExtractedLinks)> completion) {
    // What the completion holds is moved along, so that it dies on the loop's thread.
    readers.start(
        [&loop, reading = std::move(reading), completion = std::move(completion)]() mutable {
            ExtractedLinks found = URLsFromDownloadPageWithTitle(reading);
            loop.post([completion = std::move(completion), found = std::move(found)]() mutable {
                completion(std::move(found));
            });
        });
}

}  // namespace links
