#include "app/terminal/cells.h"

#include <unicode/ubrk.h>
#include <unicode/uchar.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "platform/text/ascii.h"

namespace app::terminal {
namespace {

constexpr char32_t emojiPresentationSelector = 0xFE0F;
constexpr char32_t softHyphen = 0xAD;

struct Cluster {
    qsizetype start;
    qsizetype length;
    int cells;
};

char32_t firstCodePoint(QStringView text) {
    if (text.size() > 1 && text[0].isHighSurrogate() && text[1].isLowSurrogate())
        return QChar::surrogateToUcs4(text[0], text[1]);
    return text[0].unicode();
}

bool takesNoCell(char32_t character) {
    if (character == softHyphen)
        return false;
    const auto code = static_cast<UChar32>(character);
    const auto mask = U_GET_GC_MASK(code);
    return (mask & (U_GC_MN_MASK | U_GC_ME_MASK | U_GC_CC_MASK)) != 0 ||
           u_hasBinaryProperty(code, UCHAR_DEFAULT_IGNORABLE_CODE_POINT);
}

int clusterCells(QStringView cluster) {
    const char32_t first = firstCodePoint(cluster);
    if (takesNoCell(first))
        return 0;
    const auto code = static_cast<UChar32>(first);
    const bool asEmoji =
        u_hasBinaryProperty(code, UCHAR_EMOJI_PRESENTATION) ||
        (u_hasBinaryProperty(code, UCHAR_EMOJI) &&
         cluster.contains(QChar(static_cast<char16_t>(emojiPresentationSelector))));
    if (asEmoji)
        return 2;
    const int width = u_getIntPropertyValue(code, UCHAR_EAST_ASIAN_WIDTH);
    return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

std::vector<Cluster> asciiClusters(QStringView text) {
    std::vector<Cluster> clusters;
    clusters.reserve(static_cast<std::size_t>(text.size()));
    for (qsizetype i = 0; i < text.size(); ++i)
        clusters.push_back({i, 1, text[i].unicode() < 0x20 || text[i].unicode() == 0x7F ? 0 : 1});
    return clusters;
}

std::vector<Cluster> clustersOf(QStringView text) {
    // Plain names are the rule, and opening ICU's break data is not free at start.
    if (platform::isAscii(text))
        return asciiClusters(text);
    struct Closer {
        void operator()(UBreakIterator* iterator) const { ubrk_close(iterator); }
    };
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UBreakIterator, Closer> iterator(
        ubrk_open(UBRK_CHARACTER, "", reinterpret_cast<const UChar*>(text.utf16()),
                  static_cast<int32_t>(text.size()), &status));
    std::vector<Cluster> clusters;
    if (U_FAILURE(status))
        return clusters;
    int32_t start = ubrk_first(iterator.get());
    for (int32_t end = ubrk_next(iterator.get()); end != UBRK_DONE;
         start = end, end = ubrk_next(iterator.get()))
        clusters.push_back({start, end - start, clusterCells(text.mid(start, end - start))});
    return clusters;
}

int totalCells(const std::vector<Cluster>& clusters) {
    int cells = 0;
    for (const Cluster& cluster : clusters)
        cells += cluster.cells;
    return cells;
}

bool steersTheTerminal(char32_t character) {
    const auto code = static_cast<UChar32>(character);
    constexpr auto refused = U_GC_CC_MASK | U_GC_CS_MASK | U_GC_ZL_MASK | U_GC_ZP_MASK;
    return (U_GET_GC_MASK(code) & refused) != 0 || u_hasBinaryProperty(code, UCHAR_BIDI_CONTROL);
}

QString ellipsis(Glyphs glyphs) {
    return glyphs == Glyphs::Unicode ? QStringLiteral("\u2026") : QStringLiteral("...");
}

/// As many whole clusters from the front as fit in `cells`.
QStringView head(QStringView text, const std::vector<Cluster>& clusters, int cells) {
    qsizetype length = 0;
    for (const Cluster& cluster : clusters) {
        if (cluster.cells > cells)
            break;
        cells -= cluster.cells;
        length = cluster.start + cluster.length;
    }
    return text.left(length);
}

/// As many whole clusters from the back as fit in `cells`.
QStringView tail(QStringView text, const std::vector<Cluster>& clusters, int cells) {
    qsizetype start = text.size();
    for (auto cluster = clusters.rbegin(); cluster != clusters.rend(); ++cluster) {
        if (cluster->cells > cells)
            break;
        cells -= cluster->cells;
        start = cluster->start;
    }
    return text.mid(start);
}

enum class Keep { Start, StartAndEnd };

QString clipped(const QString& text, int cells, Glyphs glyphs, Keep keep) {
    const auto clusters = clustersOf(text);
    if (totalCells(clusters) <= cells)
        return text;
    const QString mark = ellipsis(glyphs);
    const int room = cells - static_cast<int>(mark.size());
    if (room <= 0)
        return mark.left(std::max(cells, 0));
    // A tail just long enough for an extension: the beginning tells most.
    const int tailCells = keep == Keep::StartAndEnd ? room / 3 : 0;
    const QStringView end = tail(text, clusters, tailCells);
    const QStringView start = head(text, clusters, room - cellWidth(end));
    return start.toString() + mark + end.toString();
}

}  // namespace

int cellWidth(QStringView text) {
    return totalCells(clustersOf(text));
}

QString printable(QStringView text, Glyphs glyphs) {
    const QChar replacement =
        glyphs == Glyphs::Unicode ? QChar(QChar::ReplacementCharacter) : QChar(u'?');
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size();) {
        const char32_t character = firstCodePoint(text.mid(i));
        const qsizetype length = QChar::requiresSurrogates(character) ? 2 : 1;
        const bool shown =
            !steersTheTerminal(character) && (glyphs == Glyphs::Unicode || character < 0x80);
        if (shown)
            result.append(text.mid(i, length));
        else
            result.append(replacement);
        i += length;
    }
    return result;
}

QString clippedInMiddle(const QString& text, int cells, Glyphs glyphs) {
    return clipped(text, cells, glyphs, Keep::StartAndEnd);
}

QString clippedAtEnd(const QString& text, int cells, Glyphs glyphs) {
    return clipped(text, cells, glyphs, Keep::Start);
}

}  // namespace app::terminal
