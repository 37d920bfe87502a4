#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "links/recognition/text_items.h"
#include "links/recognition/url_candidates.h"
#include "platform/net/url.h"

namespace links {

/// One thing that a text came to.
struct TextFinding {
    /// A whole address (`isWholeAddress`). Nothing: see `refused`.
    std::optional<platform::Url> address;
    /// An item, or a part of one, in which there is no such address, as it stands in the text.
    QString refused;
};

/// All whole addresses in texts and what else there is, one after the other and none worked out
/// before it is asked for. An item that is an address as a whole counts as it stands, blanks in the
/// names of its files included (`URLCandidates`); one that is not, or that holds several or goes on
/// behind its address, is searched for addresses in ordinary text (`addressRuns`).
///
/// Any thread, one at a time: the setting is passed in.
class TextAddresses {
public:
    TextAddresses(const QString& text, bool skipRedirectingServices);
    /// Each text on its own; one of several lines is several items.
    TextAddresses(const QStringList& texts, bool skipRedirectingServices, SeriesGate gate = {});

    /// Nothing: that was the last.
    [[nodiscard]] std::optional<TextFinding> next();

    [[nodiscard]] static bool holdsAddress(const QStringList& texts, bool skipRedirectingServices);

private:
    [[nodiscard]] bool beginItem();
    [[nodiscard]] bool beginPiece();
    [[nodiscard]] std::optional<TextFinding> nextOfPiece();
    [[nodiscard]] std::optional<TextFinding> endOfItem();

    TextItems items_;
    bool skipsRedirectingServices_;
    SeriesGate gate_;
    QString item_;
    /// Of the item, those still to be looked at, in order.
    QStringList pieces_;
    std::optional<URLCandidates> candidates_;
    bool isSearched_ = false;
    bool hasAddress_ = false;
    /// Candidates of the item that are none, the first ones.
    QStringList misses_;
};

}  // namespace links
