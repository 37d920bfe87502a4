#include "app/terminal/progress_layout.h"

#include <algorithm>
#include <cmath>

#include "links/text/localization.h"

namespace app::terminal {
namespace {

using namespace Qt::Literals::StringLiterals;
using links::localized;

constexpr int gap = 2;
constexpr int percentCells = 4;  // "100%"
constexpr int sizeCells = 20;    // "999.9 KB of 999.9 MB"
constexpr int speedCells = 10;   // "999.9 MB/s"
constexpr int timeCells = 9;     // "12.5 days"
constexpr int leastName = 12;
constexpr int leastBar = 6;
constexpr int mostBar = 40;

/// Where each column of the progress lines begins and how wide it is; width 0: not shown.
struct Columns {
    struct Column {
        int start = 0;
        int cells = 0;
    };
    Column name, bar, percent, size, speed, time;
};

/// Which columns a width has room for: those that tell least go first.
Columns columnsFor(int width) {
    Columns columns;
    int room = width;
    const auto take = [&room](Columns::Column& column, int cells, int leftForOthers) {
        if (room - gap - cells < leftForOthers)
            return;
        column.cells = cells;
        room -= gap + cells;
    };
    take(columns.percent, percentCells, leastName);
    take(columns.time, timeCells, leastName);
    take(columns.speed, speedCells, leastName);
    take(columns.size, sizeCells, leastName);
    if (columns.size.cells > 0) {
        const int bar = std::min((room - gap) / 4, mostBar);
        if (bar >= leastBar)
            take(columns.bar, bar, leastName);
    }
    columns.name.cells = room;
    int start = room + gap;
    for (Columns::Column* column :
         {&columns.bar, &columns.percent, &columns.size, &columns.speed, &columns.time}) {
        column->start = start;
        if (column->cells > 0)
            start += column->cells + gap;
    }
    return columns;
}

QString percentText(const std::optional<double>& fraction) {
    if (!fraction)
        return {};
    // Cut, not rounded: 100 % is for what is complete.
    return u"%1%"_s.arg(static_cast<int>(std::clamp(*fraction, 0.0, 1.0) * 100.0));
}

void addLeft(Line& line, Columns::Column column, const QString& text, Ink ink = Ink::Normal) {
    if (column.cells > 0 && !text.isEmpty())
        line.spans.push_back({column.start, text, ink});
}

void addRight(Line& line, Columns::Column column, const QString& text) {
    const int cells = cellWidth(text);
    if (column.cells > 0 && cells > 0 && cells <= column.cells)
        line.spans.push_back({column.start + column.cells - cells, text});
}

void addBar(Line& line, Columns::Column column, const ProgressRow& row, Glyphs glyphs) {
    if (column.cells == 0)
        return;
    const Bar bar = progressBar(row.fraction.value_or(0.0), column.cells, glyphs);
    addLeft(line, column, bar.filled, Ink::Done);
    column.start += static_cast<int>(bar.filled.size());
    addLeft(line, column, bar.rest, Ink::Faint);
}

Line rowLine(const ProgressRow& row, const Columns& columns, int width, Glyphs glyphs) {
    Line line;
    const QString name = printable(row.name, glyphs);
    addLeft(line, columns.name, clippedInMiddle(name, columns.name.cells, glyphs));
    if (!row.note.isEmpty()) {
        const int start = columns.name.cells + gap;
        const QString note = clippedAtEnd(printable(row.note, glyphs), width - start, glyphs);
        addLeft(line, {start, width - start}, note, Ink::Faint);
        return line;
    }
    addBar(line, columns.bar, row, glyphs);
    addRight(line, columns.percent, percentText(row.fraction));
    addRight(line, columns.size, printable(row.size, glyphs));
    addRight(line, columns.speed, printable(row.speed, glyphs));
    addRight(line, columns.time, printable(row.timeLeft, glyphs));
    return line;
}

QString statusText(const QString& status, std::size_t hidden, Glyphs glyphs) {
    QString text = printable(status, glyphs);
    if (hidden > 0) {
        const QString more =
            links::filledFormat(localized("%d more not shown"), {QString::number(hidden)});
        text = text.isEmpty() ? more : text + u", "_s + more;
    }
    return text;
}

}  // namespace

Bar progressBar(double fraction, int cells, Glyphs glyphs) {
    const int halves = static_cast<int>(std::lround(std::clamp(fraction, 0.0, 1.0) * 2 * cells));
    const int full = halves / 2;
    if (glyphs == Glyphs::Ascii)
        return {QString(full, u'#'), QString(cells - full, u'-')};
    Bar bar{QString(full, u'\u2501'), QString(cells - full, u'\u2500')};
    if (halves % 2 == 1) {
        bar.filled.append(u'\u2578');
        bar.rest.chop(1);
    }
    return bar;
}

std::vector<Line> progressLines(const ProgressSnapshot& snapshot, Size size, Glyphs glyphs) {
    const int width = std::max(size.columns, 1);
    const auto room = static_cast<std::size_t>(std::max(size.lines - 1, 1));
    std::size_t shown = std::min(snapshot.rows.size(), room);
    const bool hasStatus = !snapshot.status.isEmpty() || shown < snapshot.rows.size();
    if (hasStatus && shown == room)
        --shown;

    const Columns columns = columnsFor(width);
    std::vector<Line> lines;
    for (std::size_t i = 0; i < shown; ++i)
        lines.push_back(rowLine(snapshot.rows[i], columns, width, glyphs));
    if (hasStatus) {
        const QString status = statusText(snapshot.status, snapshot.rows.size() - shown, glyphs);
        lines.push_back({{{0, clippedAtEnd(status, width, glyphs)}}});
    }
    return lines;
}

}  // namespace app::terminal
