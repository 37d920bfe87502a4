#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <algorithm>
#include <string>
#include <vector>

#include "app/terminal/terminal_output.h"

namespace tests {

/// A terminal of the plainest kind: enough of ECMA-48 to see what a program's output leaves on
/// the screen. One character takes one cell. An unknown sequence ends up visible in
/// `complaints`.
class TerminalEmulator {
public:
    TerminalEmulator(int columns, int lines) : columns_(columns), lines_(lines) { addLine(); }

    void feed(QByteArrayView bytes) {
        const QString text = QString::fromUtf8(bytes);
        for (qsizetype i = 0; i < text.size(); ++i) {
            const char16_t character = text[i].unicode();
            if (character == u'\r') {
                column_ = 0;
            } else if (character == u'\n') {
                lineFeed();
            } else if (character == 0x1B && text.mid(i + 1, 1) == u'[') {
                qsizetype end = i + 2;
                while (end < text.size() && text[end].unicode() < 0x40)
                    ++end;
                control(text.mid(i + 2, end - i - 2).toLatin1(), text[end].toLatin1());
                i = end;
            } else if (character < 0x20 || (character >= 0x7F && character < 0xA0)) {
                complaints_.append(QString::number(character, 16));
            } else {
                put(text[i]);
            }
        }
    }

    /// What stands on the screen, without trailing blanks and trailing empty lines.
    [[nodiscard]] QStringList screen() const {
        return everything().mid(static_cast<qsizetype>(firstVisible()));
    }
    /// The same, with what has scrolled off above.
    [[nodiscard]] QStringList everything() const {
        QStringList lines;
        for (QString line : text_) {
            while (line.endsWith(u' '))
                line.chop(1);
            lines.append(line);
        }
        while (!lines.isEmpty() && lines.last().isEmpty())
            lines.removeLast();
        return lines;
    }
    [[nodiscard]] const QStringList& complaints() const { return complaints_; }
    [[nodiscard]] bool showsCursor() const { return showsCursor_; }
    /// Column and line on the screen, from 0.
    [[nodiscard]] int cursorColumn() const { return column_; }
    [[nodiscard]] int cursorLine() const { return static_cast<int>(line_ - firstVisible()); }

private:
    void addLine() { text_.push_back(QString(columns_, u' ')); }
    [[nodiscard]] std::size_t firstVisible() const {
        const auto height = static_cast<std::size_t>(lines_);
        return text_.size() > height ? text_.size() - height : 0;
    }
    void lineFeed() {
        if (++line_ == text_.size())
            addLine();
    }
    void put(QChar character) {
        if (column_ == columns_) {
            if (wraps_) {
                column_ = 0;
                lineFeed();
            } else {
                --column_;
            }
        }
        text_[line_][column_++] = character;
    }
    void control(const QByteArray& parameters, char final) {
        const int number = std::max(parameters.toInt(), 1);
        switch (final) {
            case 'A':
                line_ -= std::min(static_cast<std::size_t>(number), line_ - firstVisible());
                return;
            case 'G':
                column_ = std::min(number, columns_) - 1;
                return;
            case 'J':
            case 'K':
                clearFromCursor(final == 'J');
                return;
            case 'm':
                return;
            case 'h':
            case 'l':
                if (parameters == "?7") {
                    wraps_ = final == 'h';
                    return;
                }
                if (parameters == "?25") {
                    showsCursor_ = final == 'h';
                    return;
                }
                break;
            default:
                break;
        }
        complaints_.append(QString::fromLatin1(parameters + final));
    }
    void clearFromCursor(bool toScreenEnd) {
        for (int i = column_; i < columns_; ++i)
            text_[line_][i] = u' ';
        if (toScreenEnd)
            for (std::size_t i = line_ + 1; i < text_.size(); ++i)
                text_[i].fill(u' ');
    }

    int columns_, lines_;
    int column_ = 0;
    std::size_t line_ = 0;
    bool wraps_ = true;
    bool showsCursor_ = true;
    std::vector<QString> text_;
    QStringList complaints_;
};

/// An output that a test looks into.
class MemoryOutput final : public app::terminal::Output {
public:
    void write(QByteArrayView bytes) override { written.append(bytes); }
    [[nodiscard]] bool isReady() const override { return ready; }
    [[nodiscard]] bool isInForeground() const override { return foreground; }
    [[nodiscard]] app::terminal::Size size() const override { return window; }

    /// What a terminal of that size would show.
    [[nodiscard]] std::string screen() const {
        TerminalEmulator terminal(window.columns, window.lines);
        terminal.feed(written);
        return terminal.screen().join(u'\n').toStdString();
    }

    QByteArray written;
    bool ready = true;
    bool foreground = true;
    app::terminal::Size window{40, 10};
};

}  // namespace tests
