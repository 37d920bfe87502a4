#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <list>
#include <memory>
#include <optional>

#include "platform/base/timer.h"
#include "platform/net/url.h"

namespace desktop {

/// An address of HTTP or HTTPS; nothing in a foreign document leads anywhere else.
[[nodiscard]] std::optional<platform::Url> webAddress(const QString& text);

/// Gets small documents from the web. Main thread.
class DocumentFetcher {
public:
    virtual ~DocumentFetcher() = default;

    /// Nothing: it is nowhere on the web, did not come, or not in time, or is too large.
    using Answer = std::function<void(const std::optional<QByteArray>& document)>;
    /// Not answered after the fetcher has gone.
    virtual void fetch(const QString& address, Answer answer) = 0;
};

/// With the program's HTTP client: its proxies, but no caches and no cookies.
class HTTPDocumentFetcher final : public DocumentFetcher {
public:
    explicit HTTPDocumentFetcher(platform::RunLoop& loop);
    ~HTTPDocumentFetcher() override;

    void fetch(const QString& address, Answer answer) override;

private:
    class Exchange;

    platform::RunLoop& loop_;
    std::list<std::shared_ptr<Exchange>> exchanges_;
};

}  // namespace desktop
