#include "links/pages/download_page_extraction.h"

#include <QStringList>
#include <algorithm>
#include <utility>

#include "links/pages/page_fetcher.h"
#include "links/pages/page_text.h"
#include "links/repair/url_unescaping.h"
#include "links/text/localization.h"
#include "links/text/trimming.h"
#include "platform/base/log.h"
#include "platform/text/regular_expression.h"

using namespace Qt::Literals::StringLiterals;

namespace links {

namespace {

using platform::Url;

QString addressesOf(const std::vector<Url>& urls) {
    QStringList addresses;
    for (const Url& url : urls)
        addresses.append(url.absoluteString());
    return u'(' + addresses.join(u", "_s) + u')';
}

QString patternsOf(const DownloadPageStage& stage) {
    QStringList patterns;
    for (const UserExpression& query : stage)
        patterns.append(query.pattern());
    return patterns.join(u", "_s);
}

/// The base64 text of a link that a page hides in a call of atob.
std::optional<QString> hiddenText(const QString& link) {
    if (!link.startsWith("atob("_L1))
        return std::nullopt;
    const qsizetype open = link.indexOf(u'\'');
    const qsizetype close = open < 0 ? -1 : link.indexOf(u'\'', open + 1);
    return close < 0 ? std::nullopt : std::optional(link.mid(open + 1, close - open - 1));
}

/// Pages write blanks and letters of every script as they are, but no address spans lines.
bool hasControls(const QString& link) {
    return std::any_of(link.begin(), link.end(),
                       [](QChar unit) { return unit.category() == QChar::Other_Control; });
}

std::optional<QString> textFromBase64(const QString& base64) {
    const auto decoded = QByteArray::fromBase64Encoding(
        base64.toLatin1(), QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? textFromUtf8(*decoded) : std::nullopt;
}

}  // namespace

DownloadPageExtraction::DownloadPageExtraction(const DownloadPageRule& rule,
                                               const DownloadPageReading& reading)
    : rule_(rule), reading_(reading) {}

ExtractedLinks DownloadPageExtraction::follow() {
    platform::debugLog(
        [&] { return filledFormat(u"download page: <%@> {"_s, {reading_.url.absoluteString()}); });
    found_.urls = {reading_.url};
    for (const DownloadPageStage& stage : rule_.queryCascade) {
        platform::debugLog([&] { return filledFormat(u"query: %@"_s, {patternsOf(stage)}); });
        const std::vector<Url> input = std::exchange(found_.urls, {});
        foundAddresses_.clear();
        for (const Url& url : input)
            searchPage(url, stage);
        if (found_.urls.empty()) {
            platform::debugLog(
                [&] { return filledFormat(u"} dead end: %@"_s, {addressesOf(input)}); });
            return std::move(found_);
        }
    }
    platform::debugLog(
        [&] { return filledFormat(u"} final URLs: %@"_s, {addressesOf(found_.urls)}); });
    return std::move(found_);
}

void DownloadPageExtraction::searchPage(const Url& url, const DownloadPageStage& stage) {
    const Page page = nextPage(url);
    if (!page.text)
        return;
    takeTitle(*page.text);
    for (const UserExpression& query : stage) {
        query.forEachYield(
            *page.text, [&](const QString& yield) { return takeLink(page, yield); }, reading_.stop);
        if (!rule_.collectAllMatches && !found_.urls.empty())
            return;
    }
}

DownloadPageExtraction::Page DownloadPageExtraction::nextPage(const Url& url) {
    if (const auto hidingPage = std::exchange(hidingPage_, std::nullopt))
        return {url, textFromBase64(url.absoluteString()), *hidingPage};
    return {url, fetchedText(url), url};
}

std::optional<QString> DownloadPageExtraction::fetchedText(const Url& url) const {
    PageRequest request;
    request.url = url;
    const FetchedPage fetched = reading_.fetcher->fetchSynchronously(request);
    const bool isTooLarge = fetched.data && fetched.data->size() > request.maximumBytes;
    if (fetched.data && !isTooLarge)
        return pageText(*fetched.data, fetched.contentType);
    const QString reason = isTooLarge ? u"the page is larger than 16 MiB"_s : fetched.error.text;
    platform::log(filledFormat(u"cannot load data from: %@\nerror: %@\nresponse: %@"_s,
                               {url.absoluteString(), reason, fetched.response}));
    return std::nullopt;
}

void DownloadPageExtraction::takeTitle(const QString& text) {
    if (!found_.title.isEmpty())
        return;
    const platform::RegularExpression element(u"<title>([^<]+)</title>"_s);
    if (const auto title = element.firstCapture(text, 1))
        found_.title = trimmedString(unescapedURLString(*title, reading_.skipRedirectingServices));
}

/// False: the query need not be searched for further.
bool DownloadPageExtraction::takeLink(const Page& page, const QString& yield) {
    QString link =
        unescacpedURLStringWithReplacementsApplied(yield, reading_.skipRedirectingServices);
    if (const auto hidden = hiddenText(link)) {
        link = *hidden;
        hidingPage_ = page.base;
    }
    const auto logLink = [&](const QString& format, const QString& subject) {
        platform::debugLog([&] {
            return filledFormat(format, {page.url.absoluteString(), subject});
        });
    };
    const auto url = urlOfLink(page, link);
    if (!url) {
        logLink(u"<%@> => invalid match: <%@>"_s, link);
        return true;
    }
    if (foundAddresses_.contains(url->absoluteString())) {
        logLink(u"<%@> => duplicate: <%@>"_s, url->absoluteString());
        return true;
    }
    logLink(u"<%@> => <%@>"_s, url->absoluteString());
    foundAddresses_.insert(url->absoluteString());
    found_.urls.push_back(*url);
    return rule_.collectAllMatches && !hidingPage_;
}

std::optional<Url> DownloadPageExtraction::urlOfLink(const Page& page, const QString& link) const {
    auto url = Url::parse(link);
    if (!url && !hasControls(link))
        url = Url::parseLenient(link);
    if (!url || hidingPage_ || !url->host().isEmpty())
        return url;
    return page.base.resolved(url->absoluteString());
}

}  // namespace links
