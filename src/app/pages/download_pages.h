#pragma once

#include <memory>

#include "engine/environment.h"
#include "links/pages/download_page_rule_store.h"
#include "platform/base/thread_pool.h"

namespace platform {
class RunLoop;
}

namespace app {

class HTTPPageFetcher;

/// Reads download pages by the user's rules. Main thread.
class DownloadPages final : public engine::PageReader {
public:
    DownloadPages(platform::UserDefaults& defaults, platform::RunLoop& loop);
    /// Ends what is being read and waits for the threads that read.
    ~DownloadPages() override;

    [[nodiscard]] bool isDownloadPageURL(const platform::Url& url) const override;
    [[nodiscard]] std::optional<QString> preservedNamePattern(
        const platform::Url& url) const override;
    void URLsFromDownloadPageWithTitle(
        const platform::Url& url,
        std::function<void(links::ExtractedLinks)> completion) const override;

    /// The rules, for whoever edits them. What they say of an address is remembered by downloads:
    /// see `engine::DQDownload::reevaluateDownloadPageURLStatus`.
    [[nodiscard]] links::DownloadPageRuleStore& ruleStore() { return ruleStore_; }

private:
    /// A page that is slow to come holds one up.
    static constexpr std::size_t mostReaders = 8;

    platform::UserDefaults& defaults_;
    platform::RunLoop& loop_;
    mutable links::DownloadPageRuleStore ruleStore_;
    std::shared_ptr<HTTPPageFetcher> fetcher_;
    std::stop_source stop_;
    mutable platform::ThreadPool readers_{mostReaders};
};

}  // namespace app
