#pragma once

#include <QString>
#include <optional>
#include <vector>

#include "app/terminal/cells.h"

namespace app::terminal {

/// A terminal's size, in character cells.
struct Size {
    int columns = 80;
    int lines = 24;
    bool operator==(const Size&) const = default;
};

/// One running download, in words ready to be shown. The texts need not be printable yet.
struct ProgressRow {
    QString name;
    /// 0 to 1. Nothing: the length is not known.
    std::optional<double> fraction;
    /// "1.5 of 3 MB".
    QString size;
    /// "1.2 MB/s". Empty: not known yet.
    QString speed;
    /// "1:30". Empty: not known.
    QString timeLeft;
    /// Said in place of the figures when there are none yet.
    QString note;
};

/// All that the moving part of the screen shows.
struct ProgressSnapshot {
    std::vector<ProgressRow> rows;
    QString status;
};

enum class Ink { Normal, Faint, Done, Failed };

/// A piece of a line at a fixed column (from 0), so that a character that a terminal draws wider
/// or narrower than expected moves nothing behind it.
struct Span {
    int column;
    QString text;
    Ink ink = Ink::Normal;
    bool operator==(const Span&) const = default;
};

struct Line {
    std::vector<Span> spans;
    bool operator==(const Line&) const = default;
};

/// The lines for a terminal of this size: a line for each download as far as they fit, and the
/// status below, which then also counts the ones that are not shown. Never more lines than the
/// terminal has less one (but at least one), none wider than it. Without rows and status: none.
[[nodiscard]] std::vector<Line> progressLines(const ProgressSnapshot& snapshot, Size size,
                                              Glyphs glyphs);

/// A bar of `cells` cells, filled for its part `fraction`: the text of the filled part and of the
/// rest.
struct Bar {
    QString filled;
    QString rest;
};
[[nodiscard]] Bar progressBar(double fraction, int cells, Glyphs glyphs);

}  // namespace app::terminal
