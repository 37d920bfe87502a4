#pragma once

#include <QToolButton>
#include <QWidget>
#include <array>

namespace ui {

/// Two buttons side by side that belong together.
class SegmentedControl final : public QWidget {
    Q_OBJECT

public:
    struct Segment {
        QString symbol;  ///< Name of its drawing.
        QString title;   ///< Its tool tip, and its name for assistants.
    };
    /// `isCheckable`: each segment shows whether something is on; else a click does something.
    SegmentedControl(const std::array<Segment, 2>& segments, bool isCheckable, QWidget* parent);

    void setSegmentEnabled(int segment, bool isEnabled);
    void setSegmentChecked(int segment, bool isChecked);
    /// What it does at this moment.
    void setSegmentToolTip(int segment, const QString& text);

Q_SIGNALS:
    /// By the user. The mark is still as it was: whoever acts sets it.
    void segmentClicked(int segment);
    /// Of the menu that belongs to it, at a place of the screen.
    void segmentMenuWanted(int segment, const QPoint& position);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::array<QToolButton*, 2> buttons_{};
};

}  // namespace ui
