#pragma once

#include <QSet>
#include <QString>
#include <optional>

#include "links/pages/download_page_reader.h"
#include "links/pages/download_page_rules.h"

namespace links {

/// One walk through the pages of a rule. Any one thread.
class DownloadPageExtraction {
public:
    DownloadPageExtraction(const DownloadPageRule& rule, const DownloadPageReading& reading);

    /// Once.
    [[nodiscard]] ExtractedLinks follow();

private:
    struct Page {
        platform::Url url;
        /// Nothing: could not be had, or is no text.
        std::optional<QString> text;
        /// What its relative links are relative to.
        platform::Url base;
    };

    void searchPage(const platform::Url& url, const DownloadPageStage& stage);
    [[nodiscard]] Page nextPage(const platform::Url& url);
    [[nodiscard]] std::optional<QString> fetchedText(const platform::Url& url) const;
    void takeTitle(const QString& text);
    [[nodiscard]] bool takeLink(const Page& page, const QString& yield);
    [[nodiscard]] std::optional<platform::Url> urlOfLink(const Page& page,
                                                         const QString& link) const;

    const DownloadPageRule& rule_;
    const DownloadPageReading& reading_;

    ExtractedLinks found_;
    QSet<QString> foundAddresses_;
    /// Set: the next page's address is no address but the page itself in base64, found on this
    /// page.
    std::optional<platform::Url> hidingPage_;
};

}  // namespace links
