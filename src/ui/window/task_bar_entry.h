#pragma once

#include <QObject>

class QWidget;

namespace ui {

/// Whether a window stands in the desktop's task bar. Only X11 lets a program say so; elsewhere
/// nothing happens.
class TaskBarEntry final : public QObject {
public:
    explicit TaskBarEntry(QWidget& window);

    void setShown(bool shown);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& window_;
    bool isShown_ = true;
};

}  // namespace ui
