#include "desktop/icon/application_icon.h"

#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>

namespace desktop {
namespace {

/// In the sizes that task bars and switchers mostly want, so that nobody scales it badly.
QIcon windowIcon(const QImage& image) {
    QIcon icon(QPixmap::fromImage(image));
    for (const int size : {64, 32, 16}) {
        icon.addPixmap(QPixmap::fromImage(
            image.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
    }
    return icon;
}

}  // namespace

ApplicationIcon::ApplicationIcon(const QImage& icon, const QImage& flat)
    : painter_(icon, flat), image_(icon) {
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
            [this](Qt::ApplicationState state) {
                if (state == Qt::ApplicationActive) {
                    launcher_.setUrgent(false);
                }
            });
}

void ApplicationIcon::show(const app::ApplicationImage& image) {
    image_ = painter_.paint(image);
    QGuiApplication::setWindowIcon(windowIcon(image_));
    launcher_.show(image);
    Q_EMIT changed(image_);
}

void ApplicationIcon::requestAttention() {
    if (QGuiApplication::applicationState() != Qt::ApplicationActive) {
        launcher_.setUrgent(true);
    }
}

}  // namespace desktop
