#pragma once

#include <QProxyStyle>

namespace ui {

/// The desktop's style, with what it lacks. Without a theme of icons alerts show the program's own
/// signs, and buttons of dialogs no icons: those of last resort are pixels from another age. The
/// toolkit's own style, which stands in where the desktop brings none, gets outlines that can be
/// seen in the dark, where it draws them darker than what they stand on, and no shadow of light
/// around what is disabled. Flat buttons show that keys reach them, which no style does.
class ProgramStyle final : public QProxyStyle {
    Q_OBJECT

public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                                QStyleHintReturn* returned) const override;
    [[nodiscard]] QPalette standardPalette() const override;
    [[nodiscard]] QIcon standardIcon(StandardPixmap standardIcon, const QStyleOption* option,
                                     const QWidget* widget) const override;

private:
    [[nodiscard]] bool isToolkits() const;
};

}  // namespace ui
