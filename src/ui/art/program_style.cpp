#include "ui/art/program_style.h"

#include <QPainter>
#include <QStyleOption>

#include "ui/art/contrast.h"
#include "ui/art/icons.h"
#include "ui/art/theme.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

bool hasIconTheme() {
    return QIcon::hasThemeIcon(u"dialog-warning"_s);
}

/// Only there is it a wish of the user's; elsewhere Qt takes it for granted.
bool desktopChoosesButtonIcons() {
    static const bool chooses = qEnvironmentVariable("XDG_CURRENT_DESKTOP")
                                    .split(u':')
                                    .contains(u"KDE"_s, Qt::CaseInsensitive);
    return chooses;
}

/// Larger than any alert shows it, at any scale.
constexpr int signSize = 256;

QIcon warningIcon() {
    return QIcon(colouredPixmap(u"DQFailure"_s, signSize, 1.0));
}

}  // namespace

bool ProgramStyle::isToolkits() const {
    return baseStyle()->name() == u"fusion"_s;
}

void ProgramStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                 QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    const bool isIndicator = element == PE_IndicatorCheckBox || element == PE_IndicatorRadioButton;
    if (!(isIndicator || element == PE_PanelMenu) || !isToolkits() || !isDark(option->palette)) {
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

void ProgramStyle::drawControl(ControlElement element, const QStyleOption* option,
                               QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawControl(element, option, painter, widget);
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    if (element != CE_PushButtonBevel || button == nullptr ||
        !(button->features & QStyleOptionButton::Flat) || !(option->state & State_HasFocus)) {
        return;
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(option->palette.color(QPalette::Highlight), 2));
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(QRectF(option->rect).adjusted(1, 1, -1, -1), 3, 3);
    painter->restore();
}

int ProgramStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* returned) const {
    if ((hint == SH_DialogButtonBox_ButtonsHaveIcons &&
         !(desktopChoosesButtonIcons() && hasIconTheme())) ||
        (hint == SH_EtchDisabledText && isToolkits())) {
        return 0;
    }
    return QProxyStyle::styleHint(hint, option, widget, returned);
}

/// The toolkit's own is too light for white letters.
QPalette ProgramStyle::standardPalette() const {
    QPalette palette = QProxyStyle::standardPalette();
    if (isToolkits()) {
        for (const auto group : {QPalette::Active, QPalette::Inactive}) {
            palette.setColor(group, QPalette::Highlight,
                             legible(palette.color(group, QPalette::Highlight), Qt::black,
                                     {palette.color(group, QPalette::HighlightedText)}));
        }
    }
    return palette;
}

QIcon ProgramStyle::standardIcon(StandardPixmap standardIcon, const QStyleOption* option,
                                 const QWidget* widget) const {
    if (!hasIconTheme()) {
        switch (standardIcon) {
            case SP_MessageBoxQuestion:
            case SP_MessageBoxInformation:
                return applicationIcon();
            case SP_MessageBoxWarning:
            case SP_MessageBoxCritical:
                return warningIcon();
            default:
                break;
        }
    }
    return QProxyStyle::standardIcon(standardIcon, option, widget);
}

}  // namespace ui
