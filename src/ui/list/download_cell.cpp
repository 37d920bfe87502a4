#include "ui/list/download_cell.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>
#include <QTextOption>
#include <cmath>

#include "app/rows/rows.h"
#include "ui/art/icons.h"
#include "ui/art/theme.h"
#include "ui/list/row_geometry.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

QColor textColor(const DQDownloadCell::Surroundings& surroundings) {
    const QPalette::ColorGroup group =
        surroundings.isActiveWindow ? QPalette::Active : QPalette::Inactive;
    return surroundings.palette.color(
        group, surroundings.isSelected ? QPalette::HighlightedText : QPalette::Text);
}

QColor fadedTextColor(const DQDownloadCell::Surroundings& surroundings) {
    QColor color = textColor(surroundings);
    color.setAlphaF(surroundings.isSelected ? 0.85F : 0.68F);
    return color;
}

/// What is filled of a frame; of a begun transfer at least a little.
QRect filledPart(const QRect& frame, double fraction, int border, Qt::LayoutDirection direction) {
    constexpr int least = 3;
    const int width =
        static_cast<int>(std::floor((frame.width() - border) * std::min(1.0, fraction))) + least;
    return QStyle::alignedRect(direction, Qt::AlignLeft, {width, frame.height()}, frame);
}

/// How much of a vanishing row its background covers.
float veilOpacity(double vanishFraction) {
    return static_cast<float>((vanishFraction > 0.99 ? 1.0 : vanishFraction) / 1.5);
}

}  // namespace

void DQDownloadCell::reflectDownload(app::Rows& rows, engine::DQDownload& download, bool live) {
    const engine::DQDownloadStatus status = download.status();
    _finalStatus = status == engine::DQDownloadStatusDone      ? 1
                   : status == engine::DQDownloadStatusAborted ? -1
                                                               : 0;
    _isPaused = status == engine::DQDownloadStatusPaused;
    _fraction = download.downloadCompletionFraction();
    _vanishFraction = rows.vanishing().fraction(download);
    _canPerformAction1 = rows.canPerformAction(download, engine::DQDownloadActionPrimary);
    _canPerformAction2 = rows.canPerformAction(download, engine::DQDownloadActionRemove);
    _highlightedActionButtonIndex = rows.highlightedActionButtonIndex(download);
    isLive_ = live;
    _icon = download.icon();
    name_ = download.displayName();
    _statusDescription = rows.texts().statusDescriptionWithLiveDetails(download, live);
}

int DQDownloadCell::shownButtons() const {
    if (_canPerformAction1) {
        return 2;
    }
    return _canPerformAction2 ? 1 : 0;
}

void DQDownloadCell::paint(QPainter& painter, const Surroundings& surroundings) const {
    painter.save();
    painter.setClipRect(surroundings.row);
    paintBackground(painter, surroundings);
    paintProgress(painter, surroundings);
    paintIcon(painter, surroundings);
    paintTexts(painter, surroundings);
    paintActionButton(painter, surroundings, engine::DQDownloadActionPrimary);
    paintActionButton(painter, surroundings, engine::DQDownloadActionRemove);
    if (_vanishFraction >= 0) {
        QColor veil = surroundings.palette.color(surroundings.isSelected ? QPalette::Highlight
                                                                         : QPalette::Base);
        veil.setAlphaF(veilOpacity(_vanishFraction));
        painter.fillRect(surroundings.row, veil);
    }
    painter.restore();
}

void DQDownloadCell::paintBackground(QPainter& painter, const Surroundings& surroundings) const {
    const QPalette& palette = surroundings.palette;
    const QRect& row = surroundings.row;
    if (surroundings.isSelected) {
        painter.fillRect(
            row, palette.color(surroundings.isActiveWindow ? QPalette::Active : QPalette::Inactive,
                               QPalette::Highlight));
    } else {
        painter.fillRect(row, palette.color(QPalette::Base));
    }
    if (surroundings.drawsBottomSeparator) {
        painter.fillRect(QRect(row.left(), row.bottom(), row.width(), 1), separatorColor(palette));
    }
}

bool DQDownloadCell::showsProgress() const {
    return isLive_ && _finalStatus == 0 && _fraction > 0.0001;
}

void DQDownloadCell::paintProgress(QPainter& painter, const Surroundings& surroundings) const {
    if (!showsProgress()) {
        return;
    }
    const bool active = surroundings.isActiveWindow && _fraction < 0.99999 && !_isPaused;
    const QRect& row = surroundings.row;
    const Qt::LayoutDirection direction = surroundings.direction;
    const ProgressColors colors = fractionGradientForSelectedCell(
        surroundings.palette, surroundings.style, surroundings.isSelected, active);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    switch (surroundings.style) {
        case ProgressBarStyle::LivelyBackground:
        case ProgressBarStyle::SubtleBackground: {
            const QRect area = row.adjusted(0, 0, 0, surroundings.drawsBottomSeparator ? -1 : 0);
            QLinearGradient gradient(area.topLeft(), area.bottomLeft());
            gradient.setColorAt(0, colors.top);
            gradient.setColorAt(1, colors.bottom);
            painter.fillRect(filledPart(area, _fraction, 3, direction), gradient);
            break;
        }
        case ProgressBarStyle::Pill:
            paintPill(painter, surroundings, colors.bottom);
            break;
        case ProgressBarStyle::DividerLine: {
            const QRect status = geometry_.statusFrameForCellFrame(row, shownButtons(), direction);
            const QRect bar(status.left(), status.top() - 1, status.width(), 3);
            painter.setBrush(colors.bottom);
            painter.drawRoundedRect(filledPart(bar, _fraction, 3, direction), 1.5, 1.5);
            break;
        }
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
}

void DQDownloadCell::paintPill(QPainter& painter, const Surroundings& surroundings,
                               const QColor& color) const {
    constexpr int height = 9;
    QRect frame = geometry_.blobFrameForCellFrame(surroundings.row, surroundings.direction);
    frame = QRect(frame.left(), frame.center().y() - height / 2, frame.width(), height);
    painter.setPen(QPen(fadedTextColor(surroundings), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(frame).adjusted(0.5, 0.5, -0.5, -0.5), height / 2.0,
                            height / 2.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(
        QRectF(filledPart(frame, _fraction, 2, surroundings.direction)).adjusted(2, 2, -2, -2), 2.5,
        2.5);
}

void DQDownloadCell::paintIcon(QPainter& painter, const Surroundings& surroundings) const {
    const QRect frame = geometry_.imageFrameForCellFrame(surroundings.row, surroundings.direction);
    painter.drawPixmap(frame.topLeft(), fileTypePixmap(_icon.value_or(QString()), frame.width(),
                                                       surroundings.devicePixelRatio));
    if (_finalStatus != 0) {
        constexpr int badge = 14;
        const QPoint corner = surroundings.direction == Qt::RightToLeft
                                  ? frame.bottomLeft() - QPoint(1, badge - 2)
                                  : frame.bottomRight() - QPoint(badge - 2, badge - 2);
        painter.drawPixmap(corner,
                           colouredPixmap(_finalStatus > 0 ? u"DQSuccess"_s : u"DQFailure"_s, badge,
                                          surroundings.devicePixelRatio));
    }
}

void DQDownloadCell::paintTexts(QPainter& painter, const Surroundings& surroundings) const {
    const QRect& row = surroundings.row;
    QRect name = geometry_.textFrameForCellFrame(row, shownButtons(), surroundings.direction);
    QRect status = geometry_.statusFrameForCellFrame(row, shownButtons(), surroundings.direction);
    if (surroundings.style == ProgressBarStyle::Pill && showsProgress()) {
        const QRect blob = geometry_.blobFrameForCellFrame(row, surroundings.direction);
        if (surroundings.direction == Qt::RightToLeft) {
            name.setLeft(blob.right() + 8);
            status.setLeft(blob.right() + 8);
        } else {
            name.setRight(blob.left() - 8);
            status.setRight(blob.left() - 8);
        }
    } else if (surroundings.style == ProgressBarStyle::DividerLine) {
        name.translate(0, -2);
        status.translate(0, 2);
    }
    painter.setFont(geometry_.nameFont());
    painter.setPen(textColor(surroundings));
    // A name reads in its own direction wherever it stands.
    paintText(painter, surroundings, name,
              QFontMetrics(geometry_.nameFont())
                  .elidedText(name_.simplified(), Qt::ElideMiddle, name.width()),
              name_.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    painter.setFont(geometry_.statusFont());
    painter.setPen(fadedTextColor(surroundings));
    paintText(painter, surroundings, status,
              QFontMetrics(geometry_.statusFont())
                  .elidedText(_statusDescription, Qt::ElideRight, status.width()),
              surroundings.direction);
}

void DQDownloadCell::paintText(QPainter& painter, const Surroundings& surroundings,
                               const QRect& frame, const QString& text,
                               Qt::LayoutDirection direction) const {
    const Qt::Alignment side =
        surroundings.direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft;
    QTextOption option(side | Qt::AlignAbsolute | Qt::AlignVCenter);
    option.setTextDirection(direction);
    option.setWrapMode(QTextOption::NoWrap);
    painter.drawText(QRectF(frame), text, option);
}

void DQDownloadCell::paintActionButton(QPainter& painter, const Surroundings& surroundings,
                                       unsigned index) const {
    const bool isPrimary = index == engine::DQDownloadActionPrimary;
    if (!(isPrimary ? _canPerformAction1 : _canPerformAction2)) {
        return;
    }
    const bool isPressed = _highlightedActionButtonIndex == index;
    const QRect frame =
        geometry_.frameForActionButtonWithIndex(index, surroundings.row, surroundings.direction);
    QString image = u"DQCancel"_s;
    QColor color = fadedTextColor(surroundings);
    if (isPrimary) {
        image = _finalStatus > 0 ? u"DQReveal"_s : (_isPaused ? u"DQResume"_s : u"DQPause"_s);
        if (_isPaused && _finalStatus == 0 && surroundings.isActiveWindow && !isPressed) {
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(Qt::NoPen);
            painter.setBrush(Qt::white);
            painter.drawEllipse(frame);
            painter.setRenderHint(QPainter::Antialiasing, false);
            color = QColor::fromRgbF(1.0F, 0.7F, 0.0F);
        }
    }
    if (isPressed) {
        color = surroundings.isSelected ? surroundings.palette.color(QPalette::HighlightedText)
                                        : surroundings.palette.color(QPalette::Highlight);
    }
    painter.drawPixmap(frame.topLeft(),
                       symbolPixmap(image, color, frame.width(), surroundings.devicePixelRatio));
}

}  // namespace ui
