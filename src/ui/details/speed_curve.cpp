#include "ui/details/speed_curve.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <algorithm>
#include <cmath>

#include "app/details/speed_history.h"
#include "app/rows/running_figures.h"
#include "links/format/byte_counts.h"
#include "ui/art/theme.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

namespace {

constexpr int padding = 6;

QString rateText(double bytesPerSecond) {
    // Sizes have a dash for it, which is read as "not known".
    if (bytesPerSecond < 1)
        return u"0"_s;
    return translated("%@/s").replace(u"%@"_s, links::fileSizeText(app::shownRate(bytesPerSecond)));
}

/// The next of 1, 2 and 5 with zeros, so that the scale stays while the speed wavers.
double roundedUp(double value) {
    if (value <= 0)
        return 1;
    const double unit = std::pow(10, std::floor(std::log10(value)));
    for (const double step : {1.0, 2.0, 5.0}) {
        if (value <= unit * step)
            return unit * step;
    }
    return unit * 10;
}

}  // namespace

SpeedCurve::SpeedCurve(QWidget* parent) : QLabel(parent) {
    setObjectName(u"speedCurve"_s);
    setAccessibleName(translated("Speed over the last minutes"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

QSize SpeedCurve::sizeHint() const {
    constexpr int lines = 6, columns = 28;
    return {columns * fontMetrics().averageCharWidth(), lines * fontMetrics().height()};
}

QSize SpeedCurve::minimumSizeHint() const {
    return {sizeHint().width() / 2, 4 * fontMetrics().height()};
}

void SpeedCurve::setRates(std::vector<double> rates) {
    if (rates == rates_)
        return;
    rates_ = std::move(rates);
    const double fastest = rates_.empty() ? 0 : *std::max_element(rates_.begin(), rates_.end());
    highest_ = roundedUp(fastest);
    setToolTip(
        rates_.empty()
            ? translated("Nothing has come in the last minutes of this run")
            : translated("%1 now, %2 at most").arg(rateText(rates_.back()), rateText(fastest)));
    setAccessibleName(translated("Speed over the last minutes") + u": "_s + toolTip());
    update();
}

void SpeedCurve::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    const QRect frame = rect().adjusted(padding, padding, -padding, -padding);
    painter.setFont(noteFont(font()));
    if (rates_.empty()) {
        painter.setPen(noteColor(palette()));
        painter.drawText(frame, Qt::AlignCenter | Qt::TextWordWrap,
                         translated("Nothing has come in the last minutes of this run"));
        return;
    }
    const int text = painter.fontMetrics().height();
    QRect curve = frame.adjusted(0, text + 2, 0, -text - 2);
    // Where there is room for words or a curve, it is the curve that tells more.
    if (curve.height() >= text)
        paintScale(painter, curve);
    else
        curve = frame;
    if (layoutDirection() == Qt::RightToLeft) {
        painter.translate(width(), 0);
        painter.scale(-1, 1);
    }
    paintCurve(painter, curve);
}

void SpeedCurve::paintCurve(QPainter& painter, const QRectF& frame) const {
    const auto pointOf = [&](std::size_t second) {
        const double x = static_cast<double>(second) / static_cast<double>(rates_.size() - 1);
        return QPointF(frame.left() + frame.width() * x,
                       frame.bottom() - frame.height() * rates_[second] / highest_);
    };
    QPainterPath line(pointOf(0));
    for (std::size_t second = 1; second < rates_.size(); ++second)
        line.lineTo(pointOf(second));
    QPainterPath area = line;
    area.lineTo(frame.bottomRight());
    area.lineTo(frame.bottomLeft());
    QColor accent = palette().color(QPalette::Highlight);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(accent, 1.5));
    constexpr double transparency = 0.25;
    accent.setAlphaF(transparency);
    painter.fillPath(area, accent);
    painter.drawPath(line);
}

void SpeedCurve::paintScale(QPainter& painter, const QRect& frame) const {
    const auto drawText = [&](const QRect& where, Qt::Alignment alignment, const QString& text) {
        painter.drawText(
            where, static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment)), text);
    };
    painter.setPen(QPen(separatorColor(palette()), 0));
    for (const int y : {frame.top(), frame.center().y(), frame.bottom()})
        painter.drawLine(frame.left(), y, frame.right(), y);
    painter.setPen(noteColor(palette()));
    const QRect inner = rect().adjusted(padding, padding, -padding, -padding);
    drawText(inner, Qt::AlignLeft | Qt::AlignTop, rateText(highest_));
    drawText(inner, Qt::AlignLeft | Qt::AlignBottom,
             translated("%1 minutes ago").arg(app::SpeedHistory::reach / 60));
    drawText(inner, Qt::AlignRight | Qt::AlignBottom, translated("now"));
}

}  // namespace ui
