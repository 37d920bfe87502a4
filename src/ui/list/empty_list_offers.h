#pragma once

#include <QWidget>

namespace ui {

/// Says below the text of the empty list how else addresses come in, and offers it.
class EmptyListOffers final : public QWidget {
    Q_OBJECT

public:
    explicit EmptyListOffers(QWidget* parent);

Q_SIGNALS:
    void pasteWanted();
    void addWanted();
};

}  // namespace ui
