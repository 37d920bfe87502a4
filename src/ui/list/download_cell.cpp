#include "ui/list/download_cell.h"

#include <QFontMetrics>
#include <QLinearGradient>
#include <QPainter>
#include <QStyle>
#include <QTextOption>
#include <cmath>

#include "app/rows/rows.h"
#include "links/text/typography.h"
#include "ui/art/contrast.h"
#include "ui/art/hairline.h"
#include "ui/art/icons.h"
#include "ui/list/figures.h"
#include "ui/list/row_geometry.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

/// What is filled of a frame; of a begun transfer at least a little.
QRect filledPart(const QRect& frame, double fraction, int border, Qt::LayoutDirection direction) {
    constexpr int least = 3;
    const int width =
        static_cast<int>(std::floor((frame.width() - border) * std::min(1.0, fraction))) + least;
    return QStyle::alignedRect(direction, Qt::AlignLeft, {width, frame.height()}, frame);
}

/// Slanting stripes in the two colours, `offset` pixels on their way.
QBrush stripes(const ProgressColors& colors, int offset) {
    constexpr double edge = 0.04;
    QLinearGradient gradient(offset, 0, offset + stripesPeriod / 2.0, stripesPeriod / 2.0);
    gradient.setSpread(QGradient::RepeatSpread);
    gradient.setColorAt(0, colors.top);
    gradient.setColorAt(0.5 - edge, colors.top);
    gradient.setColorAt(0.5, colors.bottom);
    gradient.setColorAt(1 - edge, colors.bottom);
    gradient.setColorAt(1, colors.top);
    return gradient;
}

/// How much of a vanishing row its background covers.
float veilOpacity(double vanishFraction) {
    return static_cast<float>((vanishFraction > 0.99 ? 1.0 : vanishFraction) / 1.5);
}

QString imageOf(app::PrimaryAction action) {
    switch (action) {
        case app::PrimaryAction::Start:
            return u"DQResume"_s;
        case app::PrimaryAction::TryAgain:
            return u"DQRetry"_s;
        case app::PrimaryAction::Reveal:
            return u"DQReveal"_s;
        case app::PrimaryAction::Pause:
            break;
    }
    return u"DQPause"_s;
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
    primary_ = app::primaryAction(download);
    trouble_ =
        status == engine::DQDownloadStatusAborted || download.isWrongFile() || download.wasGivenUp()
            ? Trouble::Failed
        : _isPaused && download.isInterrupted() ? Trouble::Interrupted
                                                : Trouble::None;
    isLive_ = live;
    _icon = download.icon();
    name_ = download.displayName();
    reflectTexts(rows.texts(), download);
}

void DQDownloadCell::reflectTexts(const app::StatusTexts& texts, engine::DQDownload& download) {
    progress_ = {};
    bytes_.clear();
    isLengthUnknown_ = false;
    if (isLive_ && download.status() == engine::DQDownloadStatusDownloading &&
        !download.isVerifying()) {
        progress_ = texts.progress(download);
        isLengthUnknown_ = !progress_.bytes.isEmpty() && progress_.percent.isEmpty();
        _statusDescription = links::stringWithDashesForHyphens(
            texts.downloadProgressDescription(progress_, download));
        if (!progress_.bytes.isEmpty())
            bytes_ = links::stringWithDashesForHyphens(texts.bytesDescription(progress_, download));
        if (!progress_.rate.isEmpty())
            progress_.rate += u"/s"_s;
    } else {
        _statusDescription = texts.statusDescriptionWithLiveDetails(download, isLive_);
    }
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
        QColor veil = surroundings.colors.background;
        veil.setAlphaF(veilOpacity(_vanishFraction));
        painter.fillRect(surroundings.row, veil);
    }
    painter.restore();
}

void DQDownloadCell::paintBackground(QPainter& painter, const Surroundings& surroundings) const {
    painter.fillRect(surroundings.row, surroundings.colors.background);
    if (surroundings.drawsBottomSeparator) {
        paintHairlineBelow(painter, surroundings.row, surroundings.separator);
    }
}

bool DQDownloadCell::showsProgress() const {
    return isLive_ && _finalStatus == 0 && _fraction > 0.0001;
}

void DQDownloadCell::paintProgress(QPainter& painter, const Surroundings& surroundings) const {
    if (!showsProgress()) {
        return;
    }
    const QRect& row = surroundings.row;
    const Qt::LayoutDirection direction = surroundings.direction;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    switch (surroundings.style) {
        case ProgressBarStyle::LivelyBackground:
        case ProgressBarStyle::SubtleBackground: {
            const QRect area = row.adjusted(0, 0, 0, surroundings.drawsBottomSeparator ? -1 : 0);
            painter.fillRect(filledPart(area, _fraction, 3, direction),
                             progressBrush(surroundings, area));
            break;
        }
        case ProgressBarStyle::Pill:
            paintPill(painter, surroundings);
            break;
        case ProgressBarStyle::DividerLine: {
            const QRect status = geometry_.statusFrameForCellFrame(row, shownButtons(), direction);
            const QRect bar(status.left(), status.top() - 1, status.width(), 3);
            painter.setBrush(progressBrush(surroundings, bar));
            painter.drawRoundedRect(filledPart(bar, _fraction, 3, direction), 1.5, 1.5);
            break;
        }
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
}

QBrush DQDownloadCell::progressBrush(const Surroundings& surroundings, const QRect& area) const {
    const RowColors& row = surroundings.colors;
    if (hasStripes()) {
        const bool isBar = surroundings.style == ProgressBarStyle::Pill ||
                           surroundings.style == ProgressBarStyle::DividerLine;
        return stripes({isBar ? blended(row.background, row.moving.top, 0.35) : row.background,
                        row.moving.bottom},
                       surroundings.stripesOffset);
    }
    const bool active = surroundings.isActiveWindow && _fraction < 0.99999 && !_isPaused;
    const ProgressColors& colors = active ? row.moving : row.stopped;
    QLinearGradient gradient(area.topLeft(), area.bottomLeft());
    gradient.setColorAt(0, colors.top);
    gradient.setColorAt(1, colors.bottom);
    return gradient;
}

void DQDownloadCell::paintPill(QPainter& painter, const Surroundings& surroundings) const {
    constexpr int height = 9;
    QRect frame = geometry_.blobFrameForCellFrame(surroundings.row, surroundings.direction);
    frame = QRect(frame.left(), frame.center().y() - height / 2, frame.width(), height);
    painter.setPen(QPen(surroundings.colors.note, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(frame).adjusted(0.5, 0.5, -0.5, -0.5), height / 2.0,
                            height / 2.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(progressBrush(surroundings, frame));
    painter.drawRoundedRect(
        QRectF(filledPart(frame, _fraction, 2, surroundings.direction)).adjusted(2, 2, -2, -2), 2.5,
        2.5);
}

void DQDownloadCell::paintIcon(QPainter& painter, const Surroundings& surroundings) const {
    const QRect frame = geometry_.imageFrameForCellFrame(surroundings.row, surroundings.direction);
    painter.drawPixmap(frame.topLeft(), fileTypePixmap(_icon.value_or(QString()), frame.width(),
                                                       surroundings.devicePixelRatio));
    // One whose file is gone has nothing to be glad about.
    const bool isFileShown = _finalStatus > 0 && (_canPerformAction1 || _vanishFraction >= 0);
    const QString badge = trouble_ == Trouble::Failed        ? u"DQFailure"_s
                          : trouble_ == Trouble::Interrupted ? u"DQInterrupted"_s
                          : isFileShown                      ? u"DQSuccess"_s
                                                             : QString();
    if (!badge.isEmpty()) {
        constexpr int size = 14;
        const QPoint corner = surroundings.direction == Qt::RightToLeft
                                  ? frame.bottomLeft() - QPoint(1, size - 2)
                                  : frame.bottomRight() - QPoint(size - 2, size - 2);
        painter.drawPixmap(corner, colouredPixmap(badge, size, surroundings.devicePixelRatio));
    }
}

bool DQDownloadCell::showsColumns(const Surroundings& surroundings) const {
    return !bytes_.isEmpty() && geometry_.hasColumns(surroundings.row);
}

DQDownloadCell::TextFrames DQDownloadCell::textFrames(const Surroundings& surroundings) const {
    const QRect& row = surroundings.row;
    const bool isMirrored = surroundings.direction == Qt::RightToLeft;
    const auto cut = [&](QRect frame, int width) {
        return isMirrored ? frame.adjusted(width, 0, 0, 0) : frame.adjusted(0, 0, -width, 0);
    };
    TextFrames frames{
        geometry_.textFrameForCellFrame(row, shownButtons(), surroundings.direction),
        geometry_.statusFrameForCellFrame(row, shownButtons(), surroundings.direction),
        {}};
    int taken = 0;
    if (surroundings.style == ProgressBarStyle::Pill && showsProgress()) {
        constexpr int space = 8;
        const QRect blob = geometry_.blobFrameForCellFrame(row, surroundings.direction);
        taken = space + (isMirrored ? blob.right() - frames.name.left()
                                    : frames.name.right() - blob.left());
    } else if (surroundings.style == ProgressBarStyle::DividerLine) {
        frames.name.translate(0, -2);
        frames.status.translate(0, 2);
    }
    frames.room = cut(frames.name, taken);
    if (showsColumns(surroundings)) {
        taken += geometry_.columnsWidth();
    }
    frames.name = cut(frames.name, taken);
    frames.status = cut(frames.status, taken);
    return frames;
}

void DQDownloadCell::paintTexts(QPainter& painter, const Surroundings& surroundings) const {
    const RowColors& colors = surroundings.colors;
    const TextFrames frames = textFrames(surroundings);
    painter.setFont(geometry_.nameFont());
    painter.setPen(colors.name);
    // A name reads in its own direction wherever it stands.
    paintText(painter, surroundings, frames.name,
              QFontMetrics(geometry_.nameFont())
                  .elidedText(name_.simplified(), Qt::ElideMiddle, frames.name.width()),
              name_.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    const bool hasColumns = showsColumns(surroundings);
    painter.setFont(geometry_.statusFont());
    painter.setPen(trouble_ == Trouble::Failed        ? colors.failed
                   : trouble_ == Trouble::Interrupted ? colors.interrupted
                                                      : colors.note);
    paintText(painter, surroundings, frames.status,
              QFontMetrics(geometry_.statusFont())
                  .elidedText(hasColumns ? bytes_ : _statusDescription, Qt::ElideRight,
                              frames.status.width()),
              surroundings.direction);
    if (hasColumns) {
        paintColumns(painter, surroundings, frames.room);
    }
}

void DQDownloadCell::paintColumns(QPainter& painter, const Surroundings& surroundings,
                                  const QRect& room) const {
    using Column = RowGeometry::Column;
    painter.setFont(geometry_.nameFont());
    painter.setPen(surroundings.colors.note);
    const bool isMirrored = surroundings.direction == Qt::RightToLeft;
    const auto paint = [&](Column column, const QString& text) {
        paintFigures(painter,
                     geometry_.columnFrame(column, surroundings.row, room, surroundings.direction),
                     text, isMirrored ? Qt::AlignLeft : Qt::AlignRight, geometry_.digitWidth());
    };
    paint(Column::Percent, progress_.percent);
    paint(Column::Rate, progress_.rate);
    paint(Column::TimeLeft, progress_.timeLeft);
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
    const RowColors& colors = surroundings.colors;
    const bool isPressed = _highlightedActionButtonIndex == index;
    const bool isPointedAt = surroundings.buttonUnderPointer == index;
    const QRect frame =
        geometry_.frameForActionButtonWithIndex(index, surroundings.row, surroundings.direction);
    const bool isStart = isPrimary && primary_ == app::PrimaryAction::Start &&
                         surroundings.isActiveWindow && !isPressed;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    if (isPointedAt || isPressed) {
        constexpr int border = 4;
        painter.setBrush(blended(colors.background, colors.name, isPressed ? 0.3 : 0.15));
        painter.drawEllipse(frame.adjusted(-border, -border, border, border));
    }
    if (isStart) {
        painter.setBrush(Qt::white);
        painter.drawEllipse(frame);
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QColor color = isStart                    ? QColor::fromRgbF(1.0F, 0.7F, 0.0F)
                         : isPointedAt || isPressed ? colors.name
                                                    : colors.note;
    painter.drawPixmap(frame.topLeft(),
                       symbolPixmap(isPrimary ? imageOf(primary_) : u"DQCancel"_s, color,
                                    frame.width(), surroundings.devicePixelRatio));
}

}  // namespace ui
