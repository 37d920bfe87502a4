#include "ui/art/plain_style.h"

#include "ui/art/icons.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

bool hasIconTheme() {
    return QIcon::hasThemeIcon(u"dialog-warning"_s);
}

/// Larger than any alert shows it, at any scale.
constexpr int signSize = 256;

QIcon warningIcon() {
    return QIcon(colouredPixmap(u"DQFailure"_s, signSize, 1.0));
}

}  // namespace

int PlainStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* returnData) const {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons && !hasIconTheme()) {
        return 0;
    }
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}

QIcon PlainStyle::standardIcon(StandardPixmap standardIcon, const QStyleOption* option,
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
