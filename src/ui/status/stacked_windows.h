#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QTimer>

#include "desktop/status/covering.h"

class QWidget;

namespace ui {

/// The windows of all programs, for one that must not get in their way. Only X11 lets a program
/// see them; elsewhere there are none.
class StackedWindows final : public QObject, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    /// `own` outlives this.
    explicit StackedWindows(const QWidget& own);
    ~StackedWindows() override;

    /// Front to back.
    [[nodiscard]] QList<desktop::StackedWindow> windows() const;

Q_SIGNALS:
    /// Another window may be in front, or fill the screen.
    void changed();

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

    const QWidget& own_;
    QTimer soon_;
    uint32_t stacking_ = 0, active_ = 0;
};

}  // namespace ui
