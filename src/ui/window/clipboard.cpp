#include "ui/window/clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

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

}  // namespace ui
