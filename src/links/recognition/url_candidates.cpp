#include "links/recognition/url_candidates.h"

#include <algorithm>

#include "links/recognition/quoted_links.h"
#include "links/repair/url_unescaping.h"
#include "links/text/trimming.h"

namespace links {
namespace {

/// Lines that are not empty, trimmed.
class Lines {
public:
    explicit Lines(const QString& text) : text_(text) {}

    std::optional<QString> operator()() {
        const QStringView text(text_);
        while (position_ < text.size()) {
            const auto start = text.begin() + position_;
            const auto end = std::find_if(start, text.end(), isNewline);
            position_ = end - text.begin() + 1;
            const QStringView line = trimmedView(QStringView(start, end));
            if (!line.isEmpty())
                return line.toString();
        }
        return std::nullopt;
    }

private:
    QString text_;
    qsizetype position_ = 0;
};

/// Items that are not empty, trimmed.
class Items {
public:
    explicit Items(const QStringList& items) : items_(items) {}

    std::optional<QString> operator()() {
        while (index_ < items_.size()) {
            QString item = trimmedString(items_[index_++]);
            if (!item.isEmpty())
                return item;
        }
        return std::nullopt;
    }

private:
    QStringList items_;
    qsizetype index_ = 0;
};

}  // namespace

URLCandidates URLCandidates::fromString(const QString& text, bool skipRedirectingServices) {
    return URLCandidates(Lines(text), skipRedirectingServices, {});
}

URLCandidates URLCandidates::fromCollection(const QStringList& items, bool skipRedirectingServices,
                                            SeriesGate gate) {
    return URLCandidates(Items(items), skipRedirectingServices, std::move(gate));
}

URLCandidates::URLCandidates(ItemSource nextItem, bool skipRedirectingServices, SeriesGate gate)
    : nextItem_(std::move(nextItem)),
      skipsRedirectingServices_(skipRedirectingServices),
      gate_(std::move(gate)) {}

bool URLCandidates::isLetIn(const QString& link) {
    const bool isIn = !gate_ || !link.contains(u'{') || gate_(link, numberOfExplodedURLs(link));
    hasKeptSeriesOut_ = hasKeptSeriesOut_ || !isIn;
    return isIn;
}

std::optional<QString> URLCandidates::next() {
    while (true) {
        if (exploded_) {
            if (auto candidate = exploded_->next())
                return candidate;
        }
        const auto link = nextLink();
        if (!link)
            return std::nullopt;
        if (isLetIn(*link))
            exploded_.emplace(*link);
    }
}

std::optional<QString> URLCandidates::nextLink() {
    if (links_.isEmpty()) {
        const auto item = nextItem_();
        if (!item)
            return std::nullopt;
        links_ = unearthedURLStrings(
            unescacpedURLStringWithReplacementsApplied(*item, skipsRedirectingServices_));
        std::reverse(links_.begin(), links_.end());
    }
    return links_.takeLast();
}

}  // namespace links
