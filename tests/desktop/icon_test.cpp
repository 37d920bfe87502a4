#include <gtest/gtest.h>

#include <QGuiApplication>

#include "desktop/icon/icon_painter.h"

namespace {

using app::ApplicationImage;

/// Fonts need an application, which must end before the process's other statics do.
class ApplicationEnvironment final : public ::testing::Environment {
public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        application_ = std::make_unique<QGuiApplication>(count_, arguments_);
    }
    void TearDown() override { application_.reset(); }

private:
    int count_ = 1;
    char name_[13] = "test_desktop";
    char* arguments_[2] = {name_, nullptr};
    std::unique_ptr<QGuiApplication> application_;
};
const auto* const applicationEnvironment =
    ::testing::AddGlobalTestEnvironment(new ApplicationEnvironment);

constexpr int extent = 100;

QImage filled(int size, const QColor& color) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    return image;
}

/// How many rows from the top are grey, at the left edge, where no badge lies.
int greyRows(const QImage& image) {
    int rows = 0;
    while (rows < image.height() && image.pixelColor(0, rows) == QColor(Qt::gray)) {
        ++rows;
    }
    return rows;
}

int differences(const QImage& a, const QImage& b, const QRect& area) {
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            count += a.pixel(x, y) != b.pixel(x, y) ? 1 : 0;
        }
    }
    return count;
}

TEST(IconPainterTest, FillsFromBelowAndBearsBadges) {
    const QImage icon = filled(extent, Qt::blue);
    const desktop::IconPainter painter(icon, filled(2 * extent, Qt::gray));
    using Overlay = ApplicationImage::Overlay;
    EXPECT_EQ(painter.paint({}), icon);
    EXPECT_EQ(greyRows(painter.paint({0, 1, Overlay::None, 0})), 75);
    EXPECT_EQ(greyRows(painter.paint({0, 1, Overlay::None, 0.5})), 50);
    EXPECT_EQ(greyRows(painter.paint({0, 1, Overlay::None, 1})), 25);

    const QRect top(extent / 2, 0, extent / 2, extent / 2);
    const QRect bottom = top.translated(0, extent / 2);
    const QImage waiting = painter.paint({12, 0, Overlay::None, -1});
    EXPECT_GT(differences(waiting, icon, top), 500);
    EXPECT_EQ(differences(waiting, icon, bottom), 0);
    EXPECT_EQ(greyRows(waiting), 0) << "nothing runs, so there is no progress";
    const QImage running = painter.paint({0, 3, Overlay::None, -1});
    EXPECT_EQ(differences(running, icon, top), 0);
    EXPECT_GT(differences(running, icon, bottom), 500);

    const QImage sleeping = painter.paint({0, 0, Overlay::SleepWhenDone, -1});
    EXPECT_NEAR(sleeping.pixelColor(0, 0).alpha(), 128, 1);
    EXPECT_NE(sleeping, painter.paint({0, 0, Overlay::ShutDownWhenDone, -1}));
}

}  // namespace
