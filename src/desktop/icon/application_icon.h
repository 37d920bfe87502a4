#pragma once

#include <QObject>

#include "desktop/icon/icon_painter.h"
#include "desktop/launcher_entry.h"

namespace desktop {

/// The program's icon wherever the desktop shows it: on its windows and in its launcher. A status
/// item follows `changed` and takes the queue's status line for its tool tip. GUI thread.
class ApplicationIcon final : public QObject {
    Q_OBJECT

public:
    /// As for `IconPainter`.
    ApplicationIcon(const QImage& icon, const QImage& flat);

    void show(const app::ApplicationImage& image);
    /// Until the user comes to the program.
    void requestAttention();

    /// As it was drawn last.
    [[nodiscard]] const QImage& image() const { return image_; }

Q_SIGNALS:
    void changed(const QImage& image);

private:
    IconPainter painter_;
    LauncherEntry launcher_;
    QImage image_;
};

}  // namespace desktop
