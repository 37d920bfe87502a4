#include "desktop/status/status_item_controller.h"

#include <gtest/gtest.h>

#include <QColor>
#include <QTemporaryDir>

#include "app/intake/pasteboard.h"
#include "desktop/settings.h"
#include "desktop/status/covering.h"
#include "desktop/status/drag_and_drop_destination.h"
#include "desktop/status/drop_target_place.h"
#include "platform/base/user_defaults.h"
#include "support/main_loop.h"

using namespace Qt::Literals::StringLiterals;
using desktop::DropTargetPlace;

namespace {

/// Takes what holds "http"; springs as told.
class Destination final : public desktop::DQStatusItemDragAndDropDestination {
public:
    QStringList draggedTypesAcceptedByStatusItem() const override { return {u"text/plain"_s}; }
    bool canDropPasteboard(const app::Pasteboard& pasteboard) const override {
        return pasteboard.text.value_or(QString()).contains(u"http"_s);
    }
    bool dropPasteboard(const app::Pasteboard& pasteboard) override {
        dropped.append(*pasteboard.text);
        return canDropPasteboard(pasteboard);
    }
    bool springLoadStatusItem() override {
        ++springs;
        return doesSpring;
    }

    QStringList dropped;
    int springs = 0;
    bool doesSpring = false;
};

class StatusItemTest : public testing::Test {
protected:
    StatusItemTest() {
        QImage image(4, 4, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::black);
        controller.setStatusItemImage(image);
        controller.setDragAndDropDestination(&destination);
    }

    bool enter(const QString& text) {
        return controller.draggingEntered({u"text/plain"_s}, {std::nullopt, text});
    }
    bool isPlain() const { return controller.image().pixelColor(1, 1) == QColor(Qt::black); }
    /// How the picture looks, a letter for each of the next steps.
    QString steps(int count) {
        QString shown;
        for (int step = 0; step < count; ++step) {
            const QColor color = controller.image().pixelColor(1, 1);
            const bool isGrey = color.red() == color.blue() && color.red() > 0;
            shown += isPlain() ? u'-' : isGrey ? u'p' : u's';
            main.advance(0.1);
        }
        return shown;
    }

    QTemporaryDir folder;
    support::MainLoop main;
    platform::UserDefaults defaults{folder.path(), u"test"_s};
    Destination destination;
    desktop::DQStatusItemController controller{defaults, main.loop};
};

TEST_F(StatusItemTest, TakesOnlyWhatHoldsAnAddress) {
    EXPECT_FALSE(controller.draggingEntered({u"image/png"_s}, {std::nullopt, u"http://a"_s}));
    EXPECT_TRUE(isPlain()) << "a type that nobody wants is not looked at";
    EXPECT_FALSE(enter(u"words"_s));
    EXPECT_FALSE(controller.isVisible());
    EXPECT_FALSE(isPlain()) << "the window would come up all the same";
    EXPECT_TRUE(enter(u"http://a.example"_s));
    EXPECT_TRUE(controller.isVisible());
    controller.draggingExited();
    EXPECT_FALSE(controller.isVisible());
    EXPECT_TRUE(isPlain());
    controller.setDragAndDropDestination(nullptr);
    EXPECT_FALSE(enter(u"http://a.example"_s));
}

TEST_F(StatusItemTest, SpringsOpenAfterTheDelayUnlessTheDragLeaves) {
    struct Case {
        QVariant delay;
        double before, after;
    };
    const auto& key = desktop::settings::statusItemDragSpringActionDelay.name();
    for (const Case& test : {Case{{}, 0.4, 0.2},
                             {2.0, 1.9, 0.2},
                             {u"soon"_s, 0.4, 0.2},
                             {0.0, -1, 0},
                             {-3.0, -1, 0}}) {
        destination.springs = 0;
        test.delay.isValid() ? defaults.setObject(key, test.delay) : defaults.removeObject(key);
        enter(u"words"_s);
        if (test.before >= 0) {
            main.advance(test.before);
            EXPECT_EQ(destination.springs, 0) << test.before;
            controller.draggingExited();
            main.advance(10);
            EXPECT_EQ(destination.springs, 0) << "it has left";
            enter(u"words"_s);
            main.advance(test.before + test.after);
        }
        EXPECT_EQ(destination.springs, 1);
        controller.draggingExited();
    }
}

TEST_F(StatusItemTest, FlashesThreeTimesForADrop) {
    enter(u"http://a.example"_s);
    EXPECT_TRUE(controller.performDragOperation({std::nullopt, u"http://a.example"_s}));
    EXPECT_EQ(destination.dropped, QStringList{u"http://a.example"_s});
    EXPECT_EQ(steps(5), u"psp--"_s);
    enter(u"words"_s);
    EXPECT_FALSE(controller.performDragOperation({std::nullopt, u"words"_s}));
    EXPECT_EQ(steps(2), u"--"_s);
    destination.doesSpring = true;
    enter(u"http://a.example"_s);
    main.advance(0.5);
    EXPECT_EQ(steps(5), u"pspss"_s) << "the drag is still there";
}

TEST(DropTargetPlace, SticksToEdgesAndOutlastsAChangeOfScreens) {
    const QList<desktop::ScreenRoom> two{{u"A B"_s, {0, 40, 1000, 760}},
                                         {u"C"_s, {1000, 0, 500, 500}}};
    struct Case {
        QRect moved;
        QRect placed, onOneOtherScreen;
    };
    for (const Case& test : {Case{{20, 300, 50, 50}, {0, 300, 50, 50}, {0, 165, 50, 50}},
                             {{940, 770, 50, 50}, {950, 750, 50, 50}, {450, 450, 50, 50}},
                             {{475, 395, 50, 50}, {475, 395, 50, 50}, {225, 225, 50, 50}},
                             {{1300, -80, 50, 50}, {1300, 0, 50, 50}, {300, 0, 50, 50}},
                             {{9000, 100, 50, 50}, {1450, 100, 50, 50}, {450, 100, 50, 50}}}) {
        const DropTargetPlace place = placeOfFrame(test.moved, two);
        EXPECT_EQ(frameAtPlace(place, {50, 50}, two), test.placed) << test.moved.x();
        const DropTargetPlace stored = desktop::placeFromText(desktop::placeText(place));
        EXPECT_EQ(stored.screen, place.screen);
        const QRect later = frameAtPlace(stored, {50, 50}, {{u"D"_s, {0, 0, 500, 500}}});
        EXPECT_LE((later.topLeft() - test.onOneOtherScreen.topLeft()).manhattanLength(), 1)
            << later.x() << ' ' << later.y();
    }
    for (const char16_t* text : {u"", u"left", u"2 0.5 C", u"nan 0 C", u"0.5"})
        EXPECT_EQ(desktop::placeFromText(QString::fromUtf16(text)), DropTargetPlace());
    EXPECT_EQ(desktop::frameAtPlace({}, {90, 90}, {{u"tiny"_s, {0, 0, 10, 10}}}),
              QRect(0, 0, 90, 90));
}

TEST(DropTargetPlace, IsAsWideAsAllowed) {
    for (const auto& [setting, width] :
         {std::pair{0, 48}, {-5, 48}, {47, 48}, {60, 60}, {500, 100}})
        EXPECT_EQ(desktop::dropTargetWidth(setting), width);
}

TEST(Covering, CountsWhatFillsTheScreenAndWithTheSettingAnything) {
    using Window = desktop::StackedWindow;
    const QRect frame(100, 100, 50, 50);
    const Window own{u"own"_s, frame, false, true};
    const Window above{u"above"_s, {101, 101, 48, 48}};
    const Window film{u"film"_s, {0, 0, 800, 600}, true};
    struct Case {
        QList<Window> windows;
        const char16_t* covering;
        const char16_t* coveringOfAll;
        bool wouldCover;
    };
    for (const Case& test : {Case{{own, film}, u"", u"", true},
                             {{film, own}, u"film", u"film", true},
                             {{above, own}, u"", u"above", false},
                             {{{u"beside"_s, {0, 0, 120, 120}}, own}, u"", u"", false},
                             {{{u"far"_s, {800, 0, 800, 600}, true}, own}, u"", u"", false},
                             {{}, u"", u"", false}}) {
        const auto name = [&](bool all) {
            return coveringWindow(test.windows, frame, all).value_or(Window()).name;
        };
        EXPECT_EQ(name(false), QString::fromUtf16(test.covering));
        EXPECT_EQ(name(true), QString::fromUtf16(test.coveringOfAll));
        EXPECT_EQ(wouldCoverFullScreenWindow(test.windows, frame), test.wouldCover);
    }
}

}  // namespace
