#include "ui/list/download_cell.h"

#include <QFontMetrics>
#include <QPainter>
#include <cmath>

#include "engine/record/download.h"
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

/// How much of `width` is filled; a begun transfer shows at least `least`.
int filledWidth(int width, double fraction, int border, int least) {
    return static_cast<int>(std::floor((width - border) * std::min(1.0, fraction))) + least;
}

}  // namespace

void DQDownloadCell::reflectDownload(engine::DQDownload& download, bool live) {
    const engine::DQDownloadStatus status = download.status();
    _finalStatus = status == engine::DQDownloadStatusDone      ? 1
                   : status == engine::DQDownloadStatusAborted ? -1
                                                               : 0;
    _isPaused = status == engine::DQDownloadStatusPaused;
    _fraction = download.downloadCompletionFraction();
    _vanishFraction = download.vanishFraction();
    _canPerformAction1 = download.canPerformActionWithIndex(engine::DQDownloadActionPrimary);
    _canPerformAction2 = download.canPerformActionWithIndex(engine::DQDownloadActionRemove);
    _highlightedActionButtonIndex = download.highlightedActionButtonIndex();
    isLive_ = live;
    _icon = download.icon();
    name_ = download.displayName();
    _statusDescription = download.statusDescriptionWithLiveDetails(live);
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
        veil.setAlphaF(static_cast<float>(std::min(1.0, _vanishFraction / 1.5)));
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

void DQDownloadCell::paintProgress(QPainter& painter, const Surroundings& surroundings) const {
    if (!isLive_ || _finalStatus != 0 || _fraction <= 0.0001) {
        return;
    }
    const bool active = surroundings.isActiveWindow && _fraction < 0.99999 && !_isPaused;
    const QRect& row = surroundings.row;
    const bool mirrored = surroundings.direction == Qt::RightToLeft;
    const auto filled = [&](const QRect& frame, int border) {
        const int width = filledWidth(frame.width(), _fraction, border, 3);
        QRect part(frame.left(), frame.top(), width, frame.height());
        if (mirrored) {
            part.moveRight(frame.right());
        }
        return part;
    };
    const ProgressColors colors =
        progressColors(surroundings.palette, surroundings.style, surroundings.isSelected, active);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    switch (surroundings.style) {
        case ProgressBarStyle::LivelyBackground:
        case ProgressBarStyle::SubtleBackground: {
            const QRect area = row.adjusted(0, 0, 0, surroundings.drawsBottomSeparator ? -1 : 0);
            QLinearGradient gradient(area.topLeft(), area.bottomLeft());
            gradient.setColorAt(0, colors.top);
            gradient.setColorAt(1, colors.bottom);
            painter.fillRect(filled(area, 3), gradient);
            break;
        }
        case ProgressBarStyle::Pill: {
            QRect frame = geometry_.blobFrame(row, surroundings.direction);
            frame = QRect(frame.left(), frame.center().y() - 4, frame.width(), 9);
            const QRectF outline = QRectF(frame).adjusted(0.5, 0.5, -0.5, -0.5);
            painter.setPen(QPen(fadedTextColor(surroundings), 1));
            painter.setBrush(Qt::NoBrush);
            painter.drawRoundedRect(outline, 4.5, 4.5);
            painter.setPen(Qt::NoPen);
            painter.setBrush(colors.bottom);
            painter.drawRoundedRect(QRectF(filled(frame, 2)).adjusted(2, 2, -2, -2), 2.5, 2.5);
            break;
        }
        case ProgressBarStyle::DividerLine: {
            const QRect status = geometry_.statusFrame(row, shownButtons(), surroundings.direction);
            const QRect bar(status.left(), status.top() - 1, status.width(), 3);
            painter.setBrush(colors.bottom);
            painter.drawRoundedRect(filled(bar, 3), 1.5, 1.5);
            break;
        }
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
}

void DQDownloadCell::paintIcon(QPainter& painter, const Surroundings& surroundings) const {
    const QRect frame = geometry_.imageFrame(surroundings.row, surroundings.direction);
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
    QRect name = geometry_.textFrame(row, shownButtons(), surroundings.direction);
    QRect status = geometry_.statusFrame(row, shownButtons(), surroundings.direction);
    if (surroundings.style == ProgressBarStyle::Pill) {
        const QRect blob = geometry_.blobFrame(row, surroundings.direction);
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
    const int flags = static_cast<int>(
        Qt::AlignVCenter |
        (surroundings.direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft));
    painter.setFont(geometry_.nameFont());
    painter.setPen(textColor(surroundings));
    painter.drawText(name, flags | Qt::TextSingleLine,
                     QFontMetrics(geometry_.nameFont())
                         .elidedText(name_.simplified(), Qt::ElideMiddle, name.width()));
    painter.setFont(geometry_.statusFont());
    painter.setPen(fadedTextColor(surroundings));
    painter.drawText(status, flags | Qt::TextSingleLine,
                     QFontMetrics(geometry_.statusFont())
                         .elidedText(_statusDescription, Qt::ElideRight, status.width()));
}

void DQDownloadCell::paintActionButton(QPainter& painter, const Surroundings& surroundings,
                                       unsigned index) const {
    const bool isPrimary = index == engine::DQDownloadActionPrimary;
    if (!(isPrimary ? _canPerformAction1 : _canPerformAction2)) {
        return;
    }
    const bool isPressed = _highlightedActionButtonIndex == index;
    const QRect frame =
        geometry_.actionButtonFrame(index, surroundings.row, surroundings.direction);
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
