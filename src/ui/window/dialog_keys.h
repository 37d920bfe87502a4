#pragma once

#include <QObject>

namespace ui {

/// Lets the key that closes windows leave dialogs too, which have no menu that it stands in.
class DialogKeys final : public QObject {
public:
    DialogKeys();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace ui
