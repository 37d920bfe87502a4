#pragma once

#include <QMap>
#include <QStringList>
#include <memory>
#include <vector>

#include "links/pages/download_page_rules.h"
#include "links/pages/page_fetcher.h"
#include "structured/shorthand/lson_serialization.h"
#include "support/log_recorder.h"

namespace links {

using support::LogRecorder;

/// The rules of a text in any spelling. Null: refused.
inline std::shared_ptr<const DownloadPageRules> rulesOf(const QString& text) {
    const auto parsed = structured::DQLSONSerialization::objectWithString(text);
    return DownloadPageRules::fromObject(parsed.object);
}

inline platform::Url urlOf(const QString& text) {
    return *platform::Url::parse(text);
}

/// Pages by address; what it does not have cannot be loaded.
class MemoryPages : public PageFetcher {
public:
    QMap<QString, QByteArray> pages;
    QString contentType;
    QStringList fetched;

    FetchedPage fetchSynchronously(const PageRequest& request) override {
        const QString address = request.url.absoluteString();
        fetched.append(address);
        FetchedPage page;
        page.contentType = contentType;
        if (pages.contains(address))
            page.data = pages[address];
        else
            page.error.text = QStringLiteral("no such host");
        return page;
    }
};

}  // namespace links
