#pragma once

#include <QProxyStyle>

namespace ui {

/// The desktop's style, with the program's own signs in alerts where the desktop has no theme of
/// icons, and no icons in the buttons of dialogs then: those of last resort are pixels from another
/// age.
class PlainStyle final : public QProxyStyle {
    Q_OBJECT

public:
    [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                                QStyleHintReturn* returnData) const override;
    [[nodiscard]] QIcon standardIcon(StandardPixmap standardIcon, const QStyleOption* option,
                                     const QWidget* widget) const override;
};

}  // namespace ui
