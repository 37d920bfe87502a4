#pragma once

#include <QLabel>
#include <vector>

namespace ui {

/// How fast something came over the last minutes, the newest at the trailing edge. A label to
/// assistive technologies, which says it in words.
class SpeedCurve final : public QLabel {
    Q_OBJECT

public:
    explicit SpeedCurve(QWidget* parent);

    /// Bytes for each second, the oldest first. Empty: nothing has come.
    void setRates(std::vector<double> rates);
    [[nodiscard]] bool isEmpty() const { return rates_.empty(); }
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintCurve(QPainter& painter, const QRectF& frame) const;
    void paintScale(QPainter& painter, const QRect& frame) const;

    std::vector<double> rates_;
    double highest_ = 0;  ///< Of the scale.
};

}  // namespace ui
