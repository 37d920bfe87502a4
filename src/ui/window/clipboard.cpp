#include "ui/window/clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QTimer>

#include "ui/window/pasteboard_contents.h"

namespace ui {

void Clipboard::copy(const app::Pasteboard& pasteboard) {
    auto* data = new QMimeData;
    if (pasteboard.urls) {
        // RFC 2483 wants each line ended, and by CRLF.
        data->setData(
            QStringLiteral("text/uri-list"),
            (pasteboard.urls->join(QStringLiteral("\r\n")) + QStringLiteral("\r\n")).toUtf8());
    }
    if (pasteboard.text) {
        data->setText(*pasteboard.text);
    }
    QGuiApplication::clipboard()->setMimeData(data);
}

app::Pasteboard Clipboard::contents() {
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    return data == nullptr ? app::Pasteboard() : pasteboardFromMimeData(*data);
}

void whenClipboardCanBeRead(const std::function<void()>& read) {
    if (!QGuiApplication::platformName().startsWith(u"wayland") ||
        QGuiApplication::applicationState() == Qt::ApplicationActive) {
        read();
        return;
    }
    auto* const patience = new QTimer(qApp);
    patience->setSingleShot(true);
    QObject::connect(patience, &QTimer::timeout, patience, [patience, read] {
        patience->deleteLater();
        read();
    });
    QObject::connect(qApp, &QGuiApplication::applicationStateChanged, patience,
                     [patience](Qt::ApplicationState state) {
                         if (state == Qt::ApplicationActive) {
                             // The clipboard comes right behind the focus.
                             patience->start(0);
                         }
                     });
    patience->start(1000);
}

}  // namespace ui
