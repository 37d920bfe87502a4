#pragma once

#include <QString>
#include <QStringView>

namespace app::terminal {

/// What the terminal can show.
enum class Glyphs { Unicode, Ascii };

/// How many character cells of a terminal a text takes: East Asian wide characters and emoji two
/// (UAX #11, UTS #51), what combines with the character before it none.
[[nodiscard]] int cellWidth(QStringView text);

/// The text on one line and without anything that would steer a terminal or turn the order of its
/// characters about: control characters of both sets, line separators, bidirectional controls and
/// lone surrogates become a replacement character. With Ascii so does every other character beyond
/// it.
[[nodiscard]] QString printable(QStringView text, Glyphs glyphs);

/// A printable text cut in its middle to at most `cells` cells, so that the beginning and the
/// extension of a file name remain; the cut is marked by an ellipsis.
[[nodiscard]] QString clippedInMiddle(const QString& text, int cells, Glyphs glyphs);
/// The same, cut at its end.
[[nodiscard]] QString clippedAtEnd(const QString& text, int cells, Glyphs glyphs);

}  // namespace app::terminal
