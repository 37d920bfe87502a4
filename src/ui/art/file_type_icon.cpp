#include "ui/art/file_type_icon.h"

#include <QFont>
#include <QIcon>
#include <QLinearGradient>
#include <QMimeDatabase>
#include <QPainter>
#include <QPainterPath>

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

struct Kind {
    const char16_t* mimePrefix = nullptr;
    QColor color;
};

/// The first prefix that fits decides; types of no kind are grey.
QColor colorOfType(const QString& mimeType) {
    static const Kind kinds[] = {
        {u"video/", QColor(0x8e, 0x44, 0xad)},
        {u"audio/", QColor(0xd3, 0x54, 0x00)},
        {u"image/", QColor(0x16, 0xa0, 0x85)},
        {u"text/", QColor(0x4a, 0x6f, 0xa5)},
        {u"font/", QColor(0x6b, 0x4e, 0x3d)},
        {u"application/pdf", QColor(0xc0, 0x39, 0x2b)},
        {u"application/x-cd-image", QColor(0x2c, 0x3e, 0x50)},
        {u"application/zip", QColor(0xb7, 0x8b, 0x1f)},
        {u"application/gzip", QColor(0xb7, 0x8b, 0x1f)},
        {u"application/x-", QColor(0xb7, 0x8b, 0x1f)},
        {u"application/vnd", QColor(0x27, 0x6d, 0xb5)},
    };
    for (const Kind& kind : kinds) {
        if (mimeType.startsWith(QString::fromUtf16(kind.mimePrefix))) {
            return kind.color;
        }
    }
    return QColor(0x7f, 0x8c, 0x8d);
}

void paintPage(QPainter& painter, const QRectF& frame, const QString& extension,
               const QColor& color) {
    const qreal unit = frame.width() / 32.0;
    const QRectF page(frame.left() + 5 * unit, frame.top() + 2 * unit, 22 * unit, 28 * unit);
    const qreal fold = 7 * unit;
    QPainterPath outline(page.topLeft() + QPointF(2 * unit, 0));
    outline.lineTo(page.right() - fold, page.top());
    outline.lineTo(page.right(), page.top() + fold);
    outline.lineTo(page.bottomRight() - QPointF(0, 2 * unit));
    outline.quadTo(page.bottomRight(), page.bottomRight() - QPointF(2 * unit, 0));
    outline.lineTo(page.bottomLeft() + QPointF(2 * unit, 0));
    outline.quadTo(page.bottomLeft(), page.bottomLeft() - QPointF(0, 2 * unit));
    outline.lineTo(page.topLeft() + QPointF(0, 2 * unit));
    outline.quadTo(page.topLeft(), page.topLeft() + QPointF(2 * unit, 0));
    QLinearGradient paper(page.topLeft(), page.bottomLeft());
    paper.setColorAt(0, QColor(0xfd, 0xfd, 0xfd));
    paper.setColorAt(1, QColor(0xe6, 0xe9, 0xec));
    painter.setPen(QPen(QColor(0x9a, 0xa2, 0xaa), qMax<qreal>(1.0, unit * 0.9)));
    painter.setBrush(paper);
    painter.drawPath(outline);

    QPainterPath ear(QPointF(page.right() - fold, page.top()));
    ear.lineTo(page.right() - fold, page.top() + fold);
    ear.lineTo(page.right(), page.top() + fold);
    painter.setBrush(QColor(0xd2, 0xd7, 0xdc));
    painter.drawPath(ear);

    constexpr qreal leastForLetters = 24;
    const bool isLettered = frame.width() >= leastForLetters;
    if (extension.isEmpty() || (isLettered && extension.size() > 5)) {
        return;
    }
    // High enough to be read beside a badge.
    const QRectF label(frame.left() + 2 * unit, frame.top() + 11 * unit, 28 * unit, 10 * unit);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(label, 2 * unit, 2 * unit);
    if (!isLettered) {
        return;
    }
    QFont font = painter.font();
    font.setBold(true);
    font.setPixelSize(qMax(6, static_cast<int>((extension.size() > 4 ? 7 : 8) * unit)));
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(label, Qt::AlignCenter, extension.toUpper());
}

}  // namespace

void paintFileTypeIcon(QPainter& painter, const QRectF& frame, const QString& extension) {
    const bool isPlain = extension.contains(u'.');
    const QMimeType type =
        QMimeDatabase().mimeTypeForFile(u"a."_s + extension, QMimeDatabase::MatchExtension);
    QIcon icon = QIcon::fromTheme(type.iconName());
    if (icon.isNull()) {
        icon = QIcon::fromTheme(type.genericIconName());
    }
    if (!icon.isNull()) {
        icon.paint(&painter, frame.toRect());
        return;
    }
    paintPage(painter, frame, isPlain ? QString() : extension, colorOfType(type.name()));
}

}  // namespace ui
