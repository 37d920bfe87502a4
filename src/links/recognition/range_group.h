#pragma once

#include <QString>

namespace links {

/// The alternatives of one range group, the text between "{" and "}", one after the other: words
/// separated by commas, ranges of characters ("a-c") and of numbers ("01-10").
///
/// Keeps a view of the text and no more than where it stands, so a range may be of any size.
class RangeGroup {
public:
    explicit RangeGroup(QStringView inside) : rest_(inside) {}

    /// Appends what stands for the group the next time. False: there is nothing more.
    [[nodiscard]] bool appendNext(QString& target);
    /// How many there still are, which takes no longer than reading the text. None is left then.
    [[nodiscard]] quint64 countRest();

private:
    enum class Run { None, Units, Numbers };

    [[nodiscard]] QStringView takeAlternative();
    /// Whether anything came of the alternative; a run that it began is still to be appended.
    [[nodiscard]] bool begin(QStringView alternative, QString& target);
    void beginRun(QStringView low, QStringView high);
    [[nodiscard]] bool appendFromRun(QString& target);

    QStringView rest_;
    bool isExhausted_ = false;
    Run run_ = Run::None;
    qint64 current_ = 0;
    qint64 last_ = 0;
    qsizetype width_ = 1;
};

}  // namespace links
