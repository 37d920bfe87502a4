#pragma once

#include <QString>
#include <optional>
#include <vector>

#include "app/terminal/progress_layout.h"
#include "app/terminal/screen.h"
#include "app/terminal/terminal_output.h"

namespace app::terminal {

/// Something that happened and deserves a line that stays.
struct Event {
    enum class Kind { Started, Completed, Failed, Notice, Problem };

    Kind kind;
    /// Of the download; the whole text of a notice or a problem.
    QString name;
    /// A size, a reason. May be empty.
    QString detail;
};

/// Tells a person how things stand. Main thread.
class Reporter {
public:
    virtual ~Reporter() = default;

    virtual void tell(const Event& event) = 0;
    /// The present state; may be called at any rate the caller likes to have on the screen.
    virtual void show(const ProgressSnapshot& snapshot) = 0;
    /// Whether `show` leads to anything.
    [[nodiscard]] virtual bool showsProgress() const = 0;
    /// The output may have changed its size or content under our hands.
    virtual void invalidate() = 0;
    /// Leaves the output to others: for a question, while stopped, at the end. The next `show`
    /// takes it again, and tells what has happened meanwhile.
    virtual void release() = 0;
};

/// One line an event; what went wrong goes to the second output.
class PlainReporter final : public Reporter {
public:
    PlainReporter(Output& output, Output& errors, Glyphs glyphs)
        : output_(output), errors_(errors), glyphs_(glyphs) {}

    void tell(const Event& event) override;
    void show(const ProgressSnapshot& snapshot) override { static_cast<void>(snapshot); }
    [[nodiscard]] bool showsProgress() const override { return false; }
    void invalidate() override {}
    void release() override {}

private:
    Output& output_;
    Output& errors_;
    Glyphs glyphs_;
};

/// Lines that change in place at the end of a terminal's screen, events above them.
class LiveReporter final : public Reporter {
public:
    LiveReporter(Output& output, const OutputMode& mode)
        : output_(output), glyphs_(mode.glyphs), screen_(mode.inColour) {}

    void tell(const Event& event) override;
    void show(const ProgressSnapshot& snapshot) override;
    [[nodiscard]] bool showsProgress() const override { return true; }
    void invalidate() override { screen_.invalidate(); }
    void release() override;

private:
    void tellPending();

    Output& output_;
    Glyphs glyphs_;
    Screen screen_;
    std::vector<Line> pending_;  ///< Events that the terminal has not taken yet.
    std::optional<Size> size_;
    bool isReleased_ = false;
};

/// The line of an event, printable.
[[nodiscard]] QString eventText(const Event& event, Glyphs glyphs);

}  // namespace app::terminal
