#include "links/recognition/text_addresses.h"

#include "links/recognition/address_runs.h"
#include "links/recognition/address_start.h"
#include "links/recognition/quoted_links.h"
#include "links/recognition/text_marks.h"
#include "links/recognition/whole_address.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

/// A range that has given nothing so often will not do so later either.
constexpr qsizetype mostMisses = 100;

bool isSeparator(QChar unit) {
    return unit.isSpace() || unit == u',' || unit == u';';
}

/// Whether a second address begins behind something that no address goes on across.
bool holdsSeveral(QStringView item) {
    auto start = findAddressStart(item);
    while (start) {
        start = findAddressStart(item, start->rest);
        if (start && isSeparator(item[start->position - 1]))
            return true;
    }
    return false;
}

/// Where the first blank is that stands in no range group; the end if there is none.
qsizetype firstBlank(QStringView item) {
    for (qsizetype at = 0; at < item.size(); ++at) {
        const qsizetype end = endOfRangeGroup(item, at);
        if (end > at)
            at = end - 1;
        else if (item[at].isSpace())
            return at;
    }
    return item.size();
}

/// Whether what stands behind a blank is about the address before it rather than the rest of its
/// file's name.
bool isComment(QStringView address, QStringView behind) {
    constexpr qsizetype mostWordsOfName = 2;
    if (endsInExtension(address))
        return !endsInExtension(u"h://h/"_s + behind.toString());
    if (endsInExtension(u"h://h/"_s + behind.toString()))
        return false;
    const bool isSetOff =
        isTrailingPunctuation(address.back()) ||
        QStringView(u"-\u2013\u2014|#(<[*\u2022\u00B7\u2192=/").contains(behind.front());
    const bool isSentence = isTrailingPunctuation(behind.back());
    return isSetOff || isSentence || behind.count(u' ') >= mostWordsOfName;
}

/// Whether an item that begins with an address goes on with something else.
bool goesOnBehindAddress(QStringView item) {
    const qsizetype length = lengthOfLeadingRun(item);
    if (length == 0 || length == item.size())
        return false;
    if (item[length] == u'|' && endsInExtension(item.first(length)))
        return true;
    const qsizetype blank = firstBlank(item);
    if (blank < item.size() && item[blank] != u' ')
        return true;
    if (blank < item.size())
        return isComment(item.first(blank), withoutMarks(item.sliced(blank)));
    const QChar next = item[length];
    if (next == u'<' || next == u'>' || next == u')' || next == u']' || isWidePunctuation(next))
        return true;
    if (isQuotationMark(next))
        return next != u'\'';
    if (next == u',' || next == u';')
        return length + 1 == item.size();
    return isTrailingPunctuation(next) && length + 1 == item.size() &&
           endsInExtension(item.first(length));
}

/// With what JSON writes as the numbers of plain characters, as it does with ampersands.
QString withoutJSONEscapes(const QString& item) {
    if (!item.contains("\\u00"_L1))
        return item;
    QString plain = item;
    for (qsizetype at = plain.indexOf("\\u00"_L1); at >= 0;
         at = plain.indexOf("\\u00"_L1, at + 1)) {
        bool isNumber = false;
        const ushort code = plain.mid(at + 2, 4).toUShort(&isNumber, 16);
        if (isNumber && code > u' ' && code < 0x7F)
            plain.replace(at, 6, QChar(code));
    }
    return plain;
}

/// No address, whatever it looks like; a series may take as much to write down.
bool isTooLong(QStringView text) {
    return text.size() > platform::Url::longest && !text.contains(u'{');
}

/// The addresses in ordinary text.
QStringList piecesOf(const QString& item) {
    QStringList pieces = addressRuns(item);
    pieces.removeIf([](const QString& piece) { return isTooLong(piece); });
    return pieces;
}

bool holdsQuotedLinks(const QString& item) {
    return (item.contains(u'"') || item.contains(u'\'')) &&
           unearthedURLStrings(item) != QStringList(item);
}

}  // namespace

TextAddresses::TextAddresses(const QString& text, bool skipRedirectingServices)
    : TextAddresses(QStringList(text), skipRedirectingServices) {}

TextAddresses::TextAddresses(const QStringList& texts, bool skipRedirectingServices,
                             SeriesGate gate)
    : items_(texts), skipsRedirectingServices_(skipRedirectingServices), gate_(std::move(gate)) {}

std::optional<TextFinding> TextAddresses::next() {
    while (true) {
        if (candidates_) {
            if (auto finding = nextOfPiece())
                return finding;
            candidates_.reset();
        }
        if (beginPiece())
            continue;
        if (auto finding = endOfItem())
            return finding;
        if (pieces_.isEmpty() && !beginItem())
            return std::nullopt;
    }
}

bool TextAddresses::holdsAddress(const QStringList& texts, bool skipRedirectingServices) {
    TextAddresses addresses(texts, skipRedirectingServices);
    while (const auto finding = addresses.next()) {
        if (finding->address)
            return true;
    }
    return false;
}

bool TextAddresses::beginItem() {
    auto next = items_.next();
    if (!next)
        return false;
    item_ = std::move(*next);
    hasAddress_ = false;
    const QString item = withoutJSONEscapes(item_);
    isSearched_ = !holdsQuotedLinks(item) &&
                  (isTooLong(item) || holdsSeveral(item) || goesOnBehindAddress(item));
    pieces_ = isSearched_ ? piecesOf(item) : QStringList(item);
    return true;
}

bool TextAddresses::beginPiece() {
    if (pieces_.isEmpty())
        return false;
    candidates_ =
        URLCandidates::fromCollection({pieces_.takeFirst()}, skipsRedirectingServices_, gate_);
    return true;
}

std::optional<TextFinding> TextAddresses::nextOfPiece() {
    while (auto candidate = candidates_->next()) {
        if (auto url = wholeAddress(*candidate)) {
            hasAddress_ = true;
            return TextFinding{std::move(url), {}};
        }
        if (misses_.size() < mostMisses)
            misses_.append(*candidate);
        else if (!hasAddress_)
            break;
    }
    // It was understood, and is not wanted.
    hasAddress_ = hasAddress_ || candidates_->hasKeptSeriesOut();
    return std::nullopt;
}

/// What is left to be said of the item, or nothing once all is.
std::optional<TextFinding> TextAddresses::endOfItem() {
    if (item_.isEmpty())
        return std::nullopt;
    if (!hasAddress_ && !isSearched_) {
        isSearched_ = true;
        misses_.clear();
        pieces_ = piecesOf(withoutJSONEscapes(item_));
        if (!pieces_.isEmpty())
            return std::nullopt;
    }
    if (hasAddress_ && !misses_.isEmpty())
        return TextFinding{{}, misses_.takeFirst()};
    misses_.clear();
    QString item = std::exchange(item_, {});
    return hasAddress_ ? std::nullopt : std::optional(TextFinding{{}, std::move(item)});
}

}  // namespace links
