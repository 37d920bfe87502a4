#pragma once

#include <QProxyStyle>

namespace ui {

/// The toolkit's own style made fit for the dark, where it draws outlines darker than what they
/// stand on and a shadow of light around what is disabled.
class OutlinedStyle final : public QProxyStyle {
    Q_OBJECT

public:
    /// Where the desktop brings no style of its own.
    static void installIfNeeded();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override;
};

}  // namespace ui
