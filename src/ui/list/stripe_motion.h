#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QRegion>
#include <QTimer>

class QWidget;

namespace ui {

/// Keeps stripes moving, as long as something with stripes is drawn and animations are wanted.
class StripeMotion final : public QObject {
public:
    /// `canvas` is what they are drawn on; it outlives this.
    explicit StripeMotion(QWidget& canvas);

    /// See `DQDownloadCell::Surroundings`.
    [[nodiscard]] int offset() const;
    /// There are stripes in `area`, which is to be drawn anew in a moment.
    void noteStripes(const QRect& area);

private:
    QWidget& canvas_;
    QElapsedTimer clock_;
    QTimer step_;
    QRegion areas_;
};

}  // namespace ui
