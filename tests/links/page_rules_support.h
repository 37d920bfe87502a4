#pragma once

#include <QMap>
#include <QStringList>
#include <memory>
#include <mutex>
#include <vector>

#include "links/pages/download_page_rules.h"
#include "links/pages/page_fetcher.h"
#include "platform/base/log.h"
#include "structured/shorthand/lson_serialization.h"

namespace links {

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

/// Keeps what is logged while it lives, debug lines included. Any thread.
class LogRecorder {
public:
    LogRecorder() : sink_(std::make_shared<Sink>()) {
        platform::addLogSink(sink_);
        platform::setDebugLogEnabled(true);
    }
    ~LogRecorder() {
        platform::setDebugLogEnabled(false);
        platform::removeLogSink(sink_);
    }
    LogRecorder(const LogRecorder&) = delete;
    LogRecorder& operator=(const LogRecorder&) = delete;

    [[nodiscard]] QStringList lines() const {
        const std::scoped_lock guard(sink_->lock);
        return sink_->lines;
    }

private:
    struct Sink : platform::LogSink {
        std::mutex lock;  ///< Guards lines.
        QStringList lines;
        void write(platform::LogLevel, const QString& line) override {
            const std::scoped_lock guard(lock);
            lines.append(line);
        }
    };
    std::shared_ptr<Sink> sink_;
};

}  // namespace links
