// Draws an icon in one size: render_icon DRAWING SIZE PICTURE.
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>

int main(int argumentCount, char** arguments) {
    if (argumentCount != 4) {
        std::fputs("render_icon DRAWING SIZE PICTURE\n", stderr);
        return 2;
    }
    QSvgRenderer drawing(QString::fromLocal8Bit(arguments[1]));
    const int size = QByteArray(arguments[2]).toInt();
    QImage picture(size, size, QImage::Format_ARGB32);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter);
    painter.end();
    if (!drawing.isValid() || !picture.save(QString::fromLocal8Bit(arguments[3]), "PNG")) {
        std::fprintf(stderr, "render_icon: %s cannot be drawn\n", arguments[1]);
        return 1;
    }
    return 0;
}
