#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <vector>

namespace tests {

/// A terminal of the plainest kind: enough of ECMA-48 to see what a program's output leaves on
/// the screen. One character takes one cell. An unknown sequence ends up visible in
/// `complaints`.
class TerminalEmulator {
public:
    TerminalEmulator(int columns, int lines) : columns_(columns), lines_(lines) { addLine(); }

    void feed(QByteArrayView bytes);

    /// What stands on the screen, without trailing blanks and trailing empty lines.
    [[nodiscard]] QStringList screen() const;
    /// The same, with what has scrolled off above.
    [[nodiscard]] QStringList everything() const;
    [[nodiscard]] const QStringList& complaints() const { return complaints_; }
    /// Column and line on the screen, from 0.
    [[nodiscard]] int cursorColumn() const { return column_; }
    [[nodiscard]] int cursorLine() const { return static_cast<int>(line_ - firstVisible()); }

private:
    void addLine() { text_.push_back(QString(columns_, u' ')); }
    [[nodiscard]] std::size_t firstVisible() const;
    void lineFeed();
    void put(QChar character);
    void control(const QByteArray& parameters, char final);
    void clearFromCursor(bool toScreenEnd);

    int columns_, lines_;
    int column_ = 0;
    std::size_t line_ = 0;
    bool wraps_ = true;
    std::vector<QString> text_;
    QStringList complaints_;
};

}  // namespace tests
