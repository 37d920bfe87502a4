// Any bytes as a download page, after a first line that is its content type; and the same bytes as
// a set of rules.
#include "fuzz_target.h"
#include "links/pages/download_page_reader.h"
#include "links/pages/download_page_rules.h"
#include "links/pages/page_fetcher.h"
#include "structured/shorthand/lson_serialization.h"

using namespace Qt::Literals::StringLiterals;

namespace {

std::shared_ptr<const links::DownloadPageRules> rulesOf(const QString& text) {
    return links::DownloadPageRules::fromObject(
        structured::DQLSONSerialization::objectWithString(text).object);
}

/// Answers with the same page, a few times.
class OnePage : public links::PageFetcher {
public:
    OnePage(QByteArray contentType, QByteArray body)
        : contentType_(QString::fromLatin1(contentType)), body_(std::move(body)) {}

    links::FetchedPage fetchSynchronously(const links::PageRequest&) override {
        links::FetchedPage page;
        if (remaining_-- > 0) {
            page.data = body_;
            page.contentType = contentType_;
        }
        return page;
    }

private:
    QString contentType_;
    QByteArray body_;
    int remaining_ = 4;
};

}  // namespace

void checkInput(const QByteArray& input) {
    static const auto rules = rulesOf(
        uR"j(
        "first" : {
            "Query Cascade" : ["href=\"([^\"]+)\"", ["(http[^\"]*)", "'(.*?)'"]]
        }
        "all" : {
            "Query Cascade" : ["(atob\\([^)]*\\))|=\"?([^\" >]+)", "(\\S+)"],
            "Collect All Matches" : true
        }
    )j"_s);
    const qsizetype lineEnd = std::max(input.indexOf('\n'), qsizetype{0});
    for (const QString& address : {u"http://first/dir/page"_s, u"http://all/"_s}) {
        auto page = std::make_shared<OnePage>(input.first(lineEnd), input.mid(lineEnd));
        static_cast<void>(links::URLsFromDownloadPageWithTitle(
            {*platform::Url::parse(address), rules, std::move(page)}));
    }
    static_cast<void>(rulesOf(QString::fromUtf8(input)));
}
