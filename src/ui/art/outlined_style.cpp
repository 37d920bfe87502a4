#include "ui/art/outlined_style.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>

#include "ui/art/theme.h"

namespace ui {

void OutlinedStyle::installIfNeeded() {
    if (QApplication::style()->name() == QStringLiteral("fusion")) {
        QApplication::setStyle(new OutlinedStyle);
    }
}

void OutlinedStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                  QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    const bool isIndicator = element == PE_IndicatorCheckBox || element == PE_IndicatorRadioButton;
    if (!isDark(option->palette) || !(isIndicator || element == PE_PanelMenu)) {
        return;
    }
    const bool isEnabled = (option->state & State_Enabled) != 0;
    painter->save();
    painter->setPen(isIndicator && isEnabled ? noteColor(option->palette)
                                             : outlineColor(option->palette));
    painter->setBrush(Qt::NoBrush);
    const QRectF frame = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
    if (element == PE_IndicatorRadioButton) {
        painter->setRenderHint(QPainter::Antialiasing);
        painter->drawEllipse(frame);
    } else {
        painter->drawRect(frame);
    }
    painter->restore();
}

int OutlinedStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                             QStyleHintReturn* returned) const {
    return hint == SH_EtchDisabledText ? 0 : QProxyStyle::styleHint(hint, option, widget, returned);
}

}  // namespace ui
