#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace links {

/// The items of a text, one after the other: its lines without blanks and invisible marks at their
/// ends, those that are empty left out. A line on which a mail program broke an address off is one
/// item with what follows: "=" at its end, a plain end near the 76th column before a word that can
/// only go on with an address, or an end within "<http://".
class TextItems {
public:
    explicit TextItems(QString text) : TextItems(QStringList{std::move(text)}) {}
    /// Of several texts, none of which goes on in the next.
    explicit TextItems(QStringList texts);

    /// Nothing: that was the last.
    [[nodiscard]] std::optional<QString> next();

private:
    [[nodiscard]] std::optional<QStringView> takeLine();
    void takeContinuations(QString& item, QStringView line);

    QStringList texts_;
    qsizetype index_ = 0;
    /// Within the text at `index_`.
    qsizetype position_ = 0;
};

}  // namespace links
