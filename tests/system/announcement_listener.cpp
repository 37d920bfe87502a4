// announcement_listener: listens to the announcements of icons on the session bus and tells on its
// standard output what each shows: of Orlop's own pictures, how many downloads wait.
#include <QGuiApplication>
#include <cstdio>

#include "desktop/announcements/aih_listener.h"
#include "desktop/icon/icon_painter.h"
#include "platform/base/user_defaults.h"
#include "ui/art/icons.h"

namespace {

constexpr int iconSize = 256;

QImage picture(const char16_t* name) {
    return ui::colouredPixmap(QString::fromUtf16(name), iconSize, 1.0).toImage();
}

void say(const QString& line) {
    std::puts(qUtf8Printable(line));
    std::fflush(stdout);
}

}  // namespace

int main(int count, char** values) {
    const QGuiApplication application(count, values);
    const platform::UserDefaults defaults(QString(), QStringLiteral("listener"));
    const desktop::IconPainter painter(picture(u"orlop"), picture(u"DQOrlopFlatOff"));
    constexpr int most = 3;
    QList<QImage> expected;
    for (int waiting = 0; waiting <= most; ++waiting) {
        app::ApplicationImage image;
        image.upperCount = waiting;
        expected.append(painter.paint(image).convertToFormat(QImage::Format_ARGB32));
    }
    desktop::AIHListener listener(defaults, {});
    listener.setListeningBlock([&](const desktop::ReceivedAnnouncement& received) {
        const auto waiting =
            expected.indexOf(received.combinedImage.convertToFormat(QImage::Format_ARGB32));
        say(QStringLiteral("%1 shows %2").arg(received.identifier).arg(waiting));
    });
    say(QStringLiteral("ready"));
    return QGuiApplication::exec();
}
