#include "app/terminal/screen.h"

namespace app::terminal {
namespace {

constexpr const char* clearLineEnd = "\x1b[K";
constexpr const char* clearScreenEnd = "\x1b[J";
constexpr const char* plainInk = "\x1b[0m";
// A character drawn wider than expected must not push a line onto the next one, and nobody wants to
// see the cursor run. Both last for one write, so that a kill leaves neither behind.
constexpr const char* drawingOn = "\x1b[?7l\x1b[?25l";
constexpr const char* drawingOff = "\x1b[?25h\x1b[?7h";

const char* inkSequence(Ink ink) {
    switch (ink) {
        case Ink::Faint:
            return "\x1b[2m";
        case Ink::Done:
            return "\x1b[32m";
        case Ink::Failed:
            return "\x1b[31m";
        case Ink::Normal:
            break;
    }
    return "";
}

QByteArray toTop(std::size_t linesBelowTop) {
    QByteArray bytes;
    if (linesBelowTop > 0)
        bytes = "\x1b[" + QByteArray::number(linesBelowTop) + "A";
    return bytes + "\r";
}

/// Line feeds rather than a cursor movement: at the screen's end they make room.
QByteArray down(std::size_t lines) {
    return lines == 0 ? QByteArray()
                      : QByteArray(static_cast<qsizetype>(lines), '\n').prepend('\r');
}

}  // namespace

QByteArrayView Screen::restoration() {
    return "\x1b[?25h\x1b[?7h\x1b[0m\r\x1b[J";
}

QByteArray Screen::encoded(const Line& line) const {
    QByteArray bytes;
    for (const Span& span : line.spans) {
        if (span.column > 0)
            bytes += "\x1b[" + QByteArray::number(span.column + 1) + "G";
        const bool coloured = inColour_ && span.ink != Ink::Normal;
        if (coloured)
            bytes += inkSequence(span.ink);
        bytes += span.text.toUtf8();
        if (coloured)
            bytes += plainInk;
    }
    return bytes;
}

QByteArray Screen::drawAll(const std::vector<Line>& lines) const {
    QByteArray bytes = QByteArray("\r") + clearScreenEnd;
    if (lines.empty())
        return bytes;
    bytes += drawingOn;
    for (std::size_t i = 0; i < lines.size(); ++i)
        bytes += down(i > 0 ? 1 : 0) + encoded(lines[i]);
    return bytes + drawingOff + toTop(lines.size() - 1);
}

QByteArray Screen::drawChanges(const std::vector<Line>& lines) const {
    QByteArray bytes = drawingOn;
    std::size_t cursor = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (i < shown_.size() && shown_[i] == lines[i])
            continue;
        // Going to the column first: text that reached the last cell leaves some terminals in a
        // state in which clearing the line's end would take that cell away.
        bytes += down(i - cursor) + "\r" + clearLineEnd + encoded(lines[i]);
        cursor = i;
    }
    if (lines.size() < shown_.size()) {
        bytes += down(lines.size() - cursor) + "\r" + clearScreenEnd;
        cursor = lines.size();
    }
    return bytes + drawingOff + toTop(cursor);
}

QByteArray Screen::show(const std::vector<Line>& lines) {
    if (isKnown_ && lines == shown_)
        return {};
    QByteArray bytes = isKnown_ ? drawChanges(lines) : drawAll(lines);
    shown_ = lines;
    isKnown_ = true;
    return bytes;
}

QByteArray Screen::printAbove(const std::vector<Line>& permanent) {
    QByteArray bytes = QByteArray("\r") + clearScreenEnd;
    for (const Line& line : permanent)
        bytes += encoded(line) + "\r\n";
    const std::vector<Line> block = shown_;
    return bytes + drawAll(block);
}

QByteArray Screen::clear() {
    if (shown_.empty() && isKnown_)
        return {};
    shown_.clear();
    isKnown_ = true;
    return QByteArray("\r") + clearScreenEnd;
}

QByteArray Screen::moveBelow() {
    if (shown_.empty())
        return {};
    QByteArray bytes = down(shown_.size());
    shown_.clear();
    return bytes;
}

}  // namespace app::terminal
