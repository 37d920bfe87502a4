#pragma once

#include <QLabel>

namespace ui {

/// One line of plain text that ends with an ellipsis where there is no room for all of it.
class ElidedLabel final : public QLabel {
public:
    using QLabel::QLabel;

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace ui
