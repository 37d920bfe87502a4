#include "ui/art/icons.h"

#include <QGuiApplication>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>
#include <cmath>

#include "ui/art/file_type_icon.h"

using namespace Qt::Literals::StringLiterals;

// The drawings lie in a static library, whose resources nobody else would pull in. The macro works
// only outside any namespace.
static void initializeDrawings() {
    Q_INIT_RESOURCE(orlop);
}

namespace ui {
namespace {

QPixmap blankPixmap(int size, qreal ratio) {
    const int pixels = static_cast<int>(std::ceil(size * ratio));
    QPixmap pixmap(pixels, pixels);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    return pixmap;
}

QPixmap renderedPixmap(const QString& path, int size, qreal ratio) {
    [[maybe_unused]] static const bool initialized = (initializeDrawings(), true);
    QPixmap pixmap = blankPixmap(size, ratio);
    QSvgRenderer renderer(path);
    QPainter painter(&pixmap);
    renderer.render(&painter, QRectF(0, 0, size, size));
    return pixmap;
}

QString actionPath(const QString& name) {
    return u":/icons/actions/%1.svg"_s.arg(name);
}

/// Paints a symbolic drawing in the text colour of the palette in force.
class SymbolIconEngine final : public QIconEngine {
public:
    SymbolIconEngine(QString name, bool isOfItem) : name_(std::move(name)), isOfItem_(isOfItem) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const qreal ratio = painter->device()->devicePixelRatioF();
        painter->drawPixmap(rect.topLeft(), pixmapFor(rect.size(), ratio, mode));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        return pixmapFor(size, 1.0, mode);
    }
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal scale) override {
        return pixmapFor(size / scale, scale, mode);
    }
    [[nodiscard]] QIconEngine* clone() const override { return new SymbolIconEngine(*this); }

private:
    [[nodiscard]] QPixmap pixmapFor(const QSize& size, qreal ratio, QIcon::Mode mode) const {
        const QPalette palette = QGuiApplication::palette();
        const QPalette::ColorGroup group =
            mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QPalette::ColorRole role =
            mode == QIcon::Selected || (isOfItem_ && mode == QIcon::Active)
                ? QPalette::HighlightedText
                : QPalette::ButtonText;
        return symbolPixmap(name_, palette.color(group, role), qMin(size.width(), size.height()),
                            ratio);
    }

    QString name_;
    bool isOfItem_;
};

}  // namespace

QPixmap symbolPixmap(const QString& name, const QColor& color, int size, qreal devicePixelRatio) {
    static QHash<QString, QPixmap> cache;
    const QString key =
        u"%1/%2/%3/%4"_s.arg(name, color.name(QColor::HexArgb)).arg(size).arg(devicePixelRatio);
    const auto found = cache.constFind(key);
    if (found != cache.constEnd()) {
        return *found;
    }
    QPixmap pixmap = renderedPixmap(actionPath(name), size, devicePixelRatio);
    QPainter painter(&pixmap);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRect(0, 0, size, size), color);
    painter.end();
    cache.insert(key, pixmap);
    return pixmap;
}

QPixmap colouredPixmap(const QString& name, int size, qreal devicePixelRatio) {
    static QHash<QString, QPixmap> cache;
    const QString key = u"%1/%2/%3"_s.arg(name).arg(size).arg(devicePixelRatio);
    QPixmap& pixmap = cache[key];
    if (pixmap.isNull()) {
        const bool isBadge =
            name == u"DQSuccess"_s || name == u"DQInterrupted"_s || name == u"DQFailure"_s;
        pixmap = renderedPixmap(isBadge ? actionPath(name) : u":/icons/app/%1.svg"_s.arg(name),
                                size, devicePixelRatio);
    }
    return pixmap;
}

QIcon symbolIcon(const QString& name) {
    return QIcon(new SymbolIconEngine(name, false));
}

QIcon itemIcon(const QString& name) {
    return QIcon(new SymbolIconEngine(name, true));
}

QIcon applicationIcon() {
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
        icon.addPixmap(colouredPixmap(u"orlop"_s, size, 1.0));
    }
    return icon;
}

QPixmap fileTypePixmap(const QString& extension, int size, qreal devicePixelRatio) {
    static QHash<QString, QPixmap> cache;
    const QString key = u"%1/%2/%3"_s.arg(size).arg(devicePixelRatio).arg(extension);
    QPixmap& pixmap = cache[key];
    if (pixmap.isNull()) {
        pixmap = blankPixmap(size, devicePixelRatio);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        paintFileTypeIcon(painter, QRectF(0, 0, size, size), extension);
    }
    return pixmap;
}

QIcon folderIcon() {
    return QIcon::fromTheme(u"folder"_s, itemIcon(u"folder"_s));
}

QIcon applicationIconNamed(const QString& iconName) {
    const QIcon fallback =
        QIcon::fromTheme(u"application-x-executable"_s, itemIcon(u"application"_s));
    if (!iconName.startsWith(u'/')) {
        return QIcon::fromTheme(iconName, fallback);
    }
    const QIcon icon(iconName);
    return icon.availableSizes().isEmpty() ? fallback : icon;
}

}  // namespace ui
