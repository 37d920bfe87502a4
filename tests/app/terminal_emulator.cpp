#include "app/terminal_emulator.h"

#include <algorithm>

namespace tests {

std::size_t TerminalEmulator::firstVisible() const {
    const auto height = static_cast<std::size_t>(lines_);
    return text_.size() > height ? text_.size() - height : 0;
}

void TerminalEmulator::lineFeed() {
    if (++line_ == text_.size())
        addLine();
}

void TerminalEmulator::put(QChar character) {
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

void TerminalEmulator::clearFromCursor(bool toScreenEnd) {
    for (int i = column_; i < columns_; ++i)
        text_[line_][i] = u' ';
    if (toScreenEnd)
        for (std::size_t i = line_ + 1; i < text_.size(); ++i)
            text_[i].fill(u' ');
}

void TerminalEmulator::control(const QByteArray& parameters, char final) {
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
            break;
        default:
            break;
    }
    complaints_.append(QString::fromLatin1(parameters + final));
}

void TerminalEmulator::feed(QByteArrayView bytes) {
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

QStringList TerminalEmulator::everything() const {
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

QStringList TerminalEmulator::screen() const {
    return everything().mid(static_cast<qsizetype>(firstVisible()));
}

}  // namespace tests
