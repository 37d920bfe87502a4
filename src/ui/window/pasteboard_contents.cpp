#include "ui/window/pasteboard_contents.h"

#include <QMimeData>
#include <QUrl>

namespace ui {
namespace {

const QString uriList = QStringLiteral("text/uri-list");

}  // namespace

bool mayHoldAddresses(const QMimeData& data) {
    return (data.hasFormat(uriList) || data.hasText()) && !pasteboardFromMimeData(data).isBlank();
}

app::Pasteboard pasteboardFromMimeData(const QMimeData& data) {
    app::Pasteboard pasteboard;
    if (data.hasFormat(uriList)) {
        pasteboard.urls = app::addressesFromUriList(QString::fromUtf8(data.data(uriList)));
    }
    if (data.hasText()) {
        pasteboard.text = data.text();
    }
    return pasteboard;
}

QStringList localPathsFromMimeData(const QMimeData& data) {
    QStringList paths;
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile()) {
            paths.push_back(url.toLocalFile());
        }
    }
    return paths;
}

}  // namespace ui
