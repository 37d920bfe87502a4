#pragma once

#include <QByteArray>
#include <QStringList>
#include <vector>

#include "app/terminal/progress_layout.h"

namespace app::terminal {

/// The moving block at the end of a terminal's screen: knows what stands there and answers the
/// bytes (ECMA-48 control functions) that change it into what shall stand there.
///
/// Between two drawings the cursor rests on the block's first cell. However a terminal wraps its
/// lines anew when its width changes, the cursor keeps to its character, so the block is found
/// again where a count of lines would be wrong.
class Screen {
public:
    explicit Screen(bool inColour) : inColour_(inColour) {}

    /// Only the lines that differ. Nothing, if none does.
    [[nodiscard]] QByteArray show(const std::vector<Line>& lines);
    /// Lines that stay, above the block. They may wrap.
    [[nodiscard]] QByteArray printAbove(const std::vector<Line>& permanent);
    /// Takes the block away; the cursor is then where it began.
    [[nodiscard]] QByteArray clear();
    /// Leaves the block standing and moves below it.
    [[nodiscard]] QByteArray moveBelow();
    /// What the terminal shows is no longer known (it was resized, something else wrote to it):
    /// the next `show` draws all.
    void invalidate() { isKnown_ = false; }

    /// What a signal handler may write to leave a terminal usable at any moment.
    [[nodiscard]] static QByteArrayView restoration();

private:
    [[nodiscard]] QByteArray encoded(const Line& line) const;
    [[nodiscard]] QByteArray drawAll(const std::vector<Line>& lines) const;
    [[nodiscard]] QByteArray drawChanges(const std::vector<Line>& lines) const;

    bool inColour_;
    bool isKnown_ = true;
    std::vector<Line> shown_;
};

}  // namespace app::terminal
