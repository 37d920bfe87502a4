#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

#include "links/recognition/exploded_urls.h"

namespace links {

/// Whether a series (`ExplodedURLs`) that stands for so many addresses is to be taken.
using SeriesGate = std::function<bool(const QString& series, quint64 length)>;

/// Everything in a text that may be an address, one after the other: each item is trimmed, repaired
/// (`unescacpedURLStringWithReplacementsApplied`), dug out of markup (`unearthedURLStrings`) and
/// expanded (`ExplodedURLs`). Nothing is worked out before it is asked for, so that a text of many
/// lines or a wide range can be taken in step by step and given up at any point.
///
/// Any thread, one at a time: the setting is passed in.
class URLCandidates {
public:
    /// Each line of `text` is an item.
    [[nodiscard]] static URLCandidates fromString(const QString& text,
                                                  bool skipRedirectingServices);
    [[nodiscard]] static URLCandidates fromCollection(const QStringList& items,
                                                      bool skipRedirectingServices,
                                                      SeriesGate gate = {});

    /// Nothing: that was the last.
    [[nodiscard]] std::optional<QString> next();
    /// The gate has kept a series out.
    [[nodiscard]] bool hasKeptSeriesOut() const { return hasKeptSeriesOut_; }

private:
    using ItemSource = std::function<std::optional<QString>()>;

    URLCandidates(ItemSource nextItem, bool skipRedirectingServices, SeriesGate gate);
    [[nodiscard]] bool isLetIn(const QString& link);
    [[nodiscard]] std::optional<QString> nextLink();

    ItemSource nextItem_;
    bool skipsRedirectingServices_;
    SeriesGate gate_;
    bool hasKeptSeriesOut_ = false;
    /// Of the current item, those not yet expanded, the next one last.
    QStringList links_;
    std::optional<ExplodedURLs> exploded_;
};

/// The form in which two addresses are compared to find duplicates: the address itself.
[[nodiscard]] inline QString comparisonURLString(const QString& text) {
    return text;
}

}  // namespace links
