#include "app/pages/download_pages.h"

#include "app/pages/page_fetcher.h"
#include "links/pages/download_page_reader.h"
#include "links/settings.h"
#include "platform/base/user_defaults.h"

namespace app {

DownloadPages::DownloadPages(platform::UserDefaults& defaults, platform::RunLoop& loop)
    : defaults_(defaults),
      loop_(loop),
      ruleStore_(defaults),
      fetcher_(std::make_shared<HTTPPageFetcher>(loop)) {}

DownloadPages::~DownloadPages() {
    stop_.request_stop();
    fetcher_->stop();
    // A reader posts its result to the loop, which must still be there then.
    readers_.waitForDone();
}

bool DownloadPages::isDownloadPageURL(const platform::Url& url) const {
    return links::isDownloadPageURL(url, ruleStore_.rulesThatMayConcern(url).get());
}

std::optional<QString> DownloadPages::preservedNamePattern(const platform::Url& url) const {
    return links::preservedNamePattern(url, ruleStore_.rulesThatMayConcern(url).get());
}

void DownloadPages::URLsFromDownloadPageWithTitle(
    const platform::Url& url, std::function<void(links::ExtractedLinks)> completion) const {
    links::readDownloadPageInBackground(
        {url, ruleStore_.downloadPageRules(), fetcher_,
         defaults_.get(links::settings::skipRedirectingServices), stop_.get_token()},
        readers_, loop_, std::move(completion));
}

}  // namespace app
