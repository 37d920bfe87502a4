#pragma once

#include <QCheckBox>
#include <QElapsedTimer>

#include "platform/session/login_item.h"

namespace ui {

/// Whether the program starts when the user logs in. Looks again whenever its window is turned to,
/// since the desktop's own settings can change that as well.
class LoginItemSwitch final : public QCheckBox {
    Q_OBJECT

public:
    explicit LoginItemSwitch(QWidget* parent);

protected:
    bool event(QEvent* event) override;

private:
    void refresh();
    void store(bool isOn);

    const platform::LoginItem item_;
    QElapsedTimer sinceRefresh_;
};

}  // namespace ui
