#include "ui/list/download_list.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <cerrno>

#include "app/rows/rows.h"
#include "engine/record/user_settings.h"
#include "platform/base/user_defaults.h"
#include "support/main_loop.h"
#include "support/memory_front_end.h"
#include "support/memory_queue.h"
#include "ui/art/contrast.h"
#include "ui/art/theme.h"
#include "ui/list/download_list_model.h"
#include "ui/list/row_texts.h"
#include "ui/list/vanishing_rows.h"

using namespace Qt::Literals::StringLiterals;

namespace {

/// Widgets need one application, which must end before the process's other statics do.
class ApplicationEnvironment final : public ::testing::Environment {
public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        application_ = std::make_unique<QApplication>(count_, arguments_);
    }
    void TearDown() override { application_.reset(); }

private:
    int count_ = 1;
    char name_[8] = "test_ui";
    char* arguments_[2] = {name_, nullptr};
    std::unique_ptr<QApplication> application_;
};
const auto* const applicationEnvironment =
    ::testing::AddGlobalTestEnvironment(new ApplicationEnvironment);

class DownloadListTest : public ::testing::Test {
protected:
    DownloadListTest() {
        platform::installStandardDefaults(&defaults);
        list = std::make_unique<ui::DQDownloadList>(state);
        list->resize(400, 300);
        list->show();
    }
    ~DownloadListTest() override {
        list.reset();
        platform::installStandardDefaults(nullptr);
    }

    void fill(int count) {
        for (int index = 0; index < count; ++index)
            owner.add(u"http://host%1.example/file%1.bin"_s.arg(index));
        reload();
    }
    void reload(const QList<qsizetype>& selection = {}) {
        list->reloadRows(std::make_shared<ui::DownloadListModel::Rows>(owner.queue.downloads()),
                         selection);
    }
    [[nodiscard]] QPoint buttonCentre(int row, unsigned button) const {
        const QRect frame = list->visualRect(list->rows().index(row));
        return ui::RowGeometry(list->font())
            .frameForActionButtonWithIndex(button, frame, list->layoutDirection())
            .center();
    }
    [[nodiscard]] QWidget* viewport() const { return list->viewport(); }

    QTemporaryDir folder;
    support::MainLoop main;
    platform::UserDefaults defaults{folder.path(), u"test"_s};
    platform::Disks disks{main.loop};
    engine::Environment environment;
    support::MemoryQueue owner{defaults, main.loop, disks, environment};
    support::MemoryFrontEnd frontEnd;
    app::Workspace workspace;
    app::Rows state{{owner.queue, workspace, frontEnd.frontEnd(),
                     [this](engine::DQDownload& download) { owner.queue.remove(download); },
                     [this](engine::DQDownload& download) { owner.queue.retry(download, true); }}};
    std::unique_ptr<ui::DQDownloadList> list;
};

TEST_F(DownloadListTest, TouchesOnlyTheRowsThatDiffer) {
    fill(6);
    const QAbstractItemModelTester tester(&list->rows(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QSignalSpy inserted(&list->rows(), &QAbstractItemModel::rowsInserted);
    const QSignalSpy removed(&list->rows(), &QAbstractItemModel::rowsRemoved);
    const QSignalSpy reset(&list->rows(), &QAbstractItemModel::modelReset);

    reload();
    EXPECT_EQ(inserted.count() + removed.count(), 0);

    owner.queue.remove(*owner.queue.downloads()[2]);
    reload();
    ASSERT_EQ(removed.count(), 1);
    EXPECT_EQ(removed.at(0).at(1).toInt(), 2);
    EXPECT_EQ(removed.at(0).at(2).toInt(), 2);

    engine::Downloads order = owner.queue.downloads();
    std::reverse(order.begin() + 1, order.end());
    owner.queue.setOrder(order);
    reload({1, 2});
    EXPECT_EQ(reset.count(), 0);
    ASSERT_EQ(list->rows().rowCount(), 5);
    for (int row = 0; row < 5; ++row)
        EXPECT_EQ(list->rows().download(row),
                  owner.queue.downloads()[static_cast<std::size_t>(row)]);
    EXPECT_EQ(list->selectionModel()->selectedIndexes().size(), 2);
}

TEST_F(DownloadListTest, FindsRowsByArithmeticInAnyNumber) {
    std::vector<engine::DownloadPtr> rows(100'000, owner.add(u"http://a.example/x"_s));
    list->reloadRows(std::make_shared<ui::DownloadListModel::Rows>(rows), {});
    EXPECT_EQ(list->contentHeight(), 100'000 * list->rowHeight());
    for (const int row : {0, 1, 49'999, 99'999}) {
        const QModelIndex index = list->rows().index(row);
        list->scrollTo(index, QAbstractItemView::EnsureVisible);
        const QRect frame = list->visualRect(index);
        EXPECT_TRUE(viewport()->rect().intersects(frame)) << row;
        EXPECT_EQ(list->indexAt(frame.center()).row(), row);
        EXPECT_EQ(list->indexAt(frame.topLeft()).row(), row);
    }
    EXPECT_FALSE(list->indexAt({10, 100'000}).isValid());
}

TEST_F(DownloadListTest, MarksTheActionButtonThatIsPressed) {
    fill(3);
    const engine::DownloadPtr second = owner.queue.downloads()[1];
    QTest::mousePress(viewport(), Qt::LeftButton, {}, buttonCentre(1, 1));
    EXPECT_EQ(state.highlightedActionButtonIndex(*second), 1U);
    QTest::mouseMove(viewport(), {60, 10});
    EXPECT_EQ(state.highlightedActionButtonIndex(*second), 0U);
    QTest::mouseRelease(viewport(), Qt::LeftButton, {}, {60, 10});
    EXPECT_EQ(second->status(), engine::DQDownloadStatusPaused);
}

TEST_F(DownloadListTest, ObeysTheKeyboard) {
    fill(30);
    const QSignalSpy selected(list.get(), &ui::DQDownloadList::selectionMade);
    const QSignalSpy remove(list.get(), &ui::DQDownloadList::removeWanted);
    QTest::keyClick(list.get(), Qt::Key_Down);
    QTest::keyClick(list.get(), Qt::Key_Down, Qt::ShiftModifier);
    ASSERT_FALSE(selected.isEmpty());
    EXPECT_EQ(selected.last().at(0).value<QList<qsizetype>>(), (QList<qsizetype>{0, 1}));
    QTest::keyClick(list.get(), Qt::Key_End);
    EXPECT_EQ(list->currentIndex().row(), 29);
    EXPECT_TRUE(viewport()->rect().contains(list->visualRect(list->currentIndex()).center()));
    const QSignalSpy toggle(list.get(), &ui::DQDownloadList::pauseToggleWanted);
    QTest::keyClick(list.get(), Qt::Key_Space);
    EXPECT_EQ(toggle.count(), 1);
    QTest::keyClick(list.get(), Qt::Key_Delete);
    EXPECT_EQ(remove.count(), 1);
    QTest::keyClick(list.get(), Qt::Key_Escape);
    EXPECT_TRUE(list->selectionModel()->selectedIndexes().isEmpty());
}

TEST_F(DownloadListTest, KeysGoToTheSameDownloadAfterRowsWereMoved) {
    fill(4);
    const auto chosen = owner.queue.downloads()[1];
    list->selectRows({1});
    auto order = owner.queue.downloads();
    std::rotate(order.begin(), order.begin() + 1, order.end());
    list->reloadRows(std::make_shared<ui::DownloadListModel::Rows>(order), {0});
    EXPECT_EQ(list->rows().download(list->currentIndex().row()), chosen);
    EXPECT_EQ(list->selectionModel()->selectedIndexes().size(), 1);

    // What was current has left; keys go to what is selected instead.
    order.erase(order.begin());
    list->reloadRows(std::make_shared<ui::DownloadListModel::Rows>(order), {2});
    EXPECT_EQ(list->currentIndex().row(), 2);
}

TEST_F(DownloadListTest, ButtonsSayWhatTheyWillDoAndTakeThePointerAround) {
    const engine::DownloadPtr row = owner.add(u"http://a.example/long.bin"_s);
    reload();
    const auto tip = [&](unsigned index) { return ui::actionToolTip(*row, index); };
    EXPECT_EQ(tip(1), u"Start"_s);
    EXPECT_EQ(tip(2), u"Remove"_s);
    row->setIntermediateDownloadTargetPath(folder.filePath(u"long.bin.orlop/long.bin"_s));
    row->userSettings().set(engine::keys::keptBytes, 12'000'000);
    EXPECT_EQ(tip(1), u"Go on after 12 MB"_s);
    EXPECT_EQ(tip(2), u"Remove, deletes 12 MB when Orlop quits"_s);
    row->addToQueue();
    row->interrupt(platform::posixError(EIO));
    EXPECT_EQ(tip(1), u"Try again, goes on after 12 MB"_s);
    const QString said =
        list->rows().data(list->rows().index(0), Qt::AccessibleTextRole).toString();
    EXPECT_TRUE(said.contains(u"The disk reports an error."_s)) << qPrintable(said);

    const ui::RowGeometry geometry(list->font());
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        const QRect frame = list->visualRect(list->rows().index(0));
        const QRect first = geometry.areaOfActionButtonWithIndex(1, frame, direction);
        const QRect second = geometry.areaOfActionButtonWithIndex(2, frame, direction);
        EXPECT_FALSE(first.intersects(second));
        for (const unsigned index : {1U, 2U}) {
            const QRect area = geometry.areaOfActionButtonWithIndex(index, frame, direction);
            EXPECT_TRUE(area.width() >= 22 && area.height() >= 22);
            EXPECT_TRUE(
                area.contains(geometry.frameForActionButtonWithIndex(index, frame, direction)));
        }
    }
}

TEST_F(DownloadListTest, FailedRowsAreTriedAgainByTheirButton) {
    const engine::DownloadPtr failed = owner.add(u"http://a.example/gone"_s, true);
    failed->becomeDownloading();
    failed->abort();
    reload();
    QTest::mouseClick(viewport(), Qt::LeftButton, {}, buttonCentre(0, 1));
    ASSERT_EQ(owner.queue.downloads().size(), 1U);
    EXPECT_NE(owner.queue.downloads().front(), failed);
    EXPECT_EQ(owner.queue.downloads().front()->status(), engine::DQDownloadStatusQueued);
}

TEST_F(DownloadListTest, EmptyListOffersOtherWaysWhereThereIsRoom) {
    auto* offers = list->findChild<QWidget*>(u"emptyListOffers"_s);
    EXPECT_TRUE(offers->isVisible());
    EXPECT_TRUE(viewport()->rect().contains(offers->geometry()));
    const QSignalSpy paste(list.get(), &ui::DQDownloadList::pasteWanted);
    offers->findChild<QPushButton*>()->click();
    EXPECT_EQ(paste.count(), 1);
    list->setFilteredOut(true);
    EXPECT_FALSE(offers->isVisible());
    list->setFilteredOut(false);
    list->resize(400, 80);
    EXPECT_FALSE(offers->isVisible());
    list->resize(400, 300);
    fill(1);
    EXPECT_FALSE(offers->isVisible());
}

TEST(RowGeometry, WideRowsHaveColumnsThatMissTheButtons) {
    const ui::RowGeometry geometry((QFont()));
    using Column = ui::RowGeometry::Column;
    EXPECT_FALSE(geometry.hasColumns({0, 0, 599, 40}));
    const QRect row(0, 0, 640, geometry.rowHeight());
    ASSERT_TRUE(geometry.hasColumns(row));
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        const QRect texts = geometry.textFrameForCellFrame(row, 2, direction);
        QRect before;
        int width = 0;
        for (const Column column : {Column::Percent, Column::Rate, Column::TimeLeft}) {
            const QRect frame = geometry.columnFrame(column, row, texts, direction);
            EXPECT_FALSE(frame.intersects(before));
            EXPECT_TRUE(frame.left() >= texts.left() && frame.right() <= texts.right());
            before = frame;
            width += frame.width();
        }
        EXPECT_EQ(width, geometry.columnsWidth());
    }
}

TEST(RowColors, TextsCanBeReadOnAllThatIsBehindThem) {
    QPalette light;
    light.setColor(QPalette::Base, Qt::white);
    light.setColor(QPalette::Text, Qt::black);
    light.setColor(QPalette::Highlight, QColor(0x30, 0x8c, 0xc6));
    light.setColor(QPalette::HighlightedText, Qt::white);
    for (const QPalette& palette : {light, ui::darkPalette()}) {
        for (int style = 0; style < 4; ++style) {
            for (int state = 0; state < 4; ++state) {
                const auto kind = static_cast<ui::ProgressBarStyle>(style);
                const ui::RowColors row = ui::rowColors(palette, kind, state % 2 > 0, state > 1);
                std::vector<QColor> grounds{row.background};
                if (style < 2)
                    grounds.insert(grounds.end(), {row.moving.top, row.moving.bottom,
                                                   row.stopped.top, row.stopped.bottom});
                for (const QColor& ground : grounds)
                    for (const QColor& ink : {row.name, row.note, row.interrupted, row.failed})
                        EXPECT_GE(ui::contrast(ink, ground), ui::legibleContrast)
                            << qPrintable(ink.name() + u" on "_s + ground.name());
            }
        }
    }
    EXPECT_NEAR(ui::contrast(Qt::black, Qt::white), 21, 0.01);
}

TEST(RowTexts, ToolTipsWrapBetweenWordsAndWithinAddresses) {
    EXPECT_EQ(ui::wrapped(u"one two three"_s, 8), u"one two\nthree"_s);
    EXPECT_EQ(ui::wrapped(u"http://host/path\nx"_s, 10), u"http://hos\nt/path\nx"_s);
}

TEST_F(DownloadListTest, CollapsesVanishingRowsTogether) {
    defaults.setObject(u"Useless Animations"_s, true);
    fill(4);
    const int full = list->contentHeight();
    state.vanishing().vanish(*owner.queue.downloads()[1], list->vanishingRows(), 0);
    state.vanishing().vanish(*owner.queue.downloads()[2], list->vanishingRows(), 0);
    int least = full;
    QObject::connect(list.get(), &ui::DQDownloadList::contentHeightChanged, list.get(),
                     [&] { least = std::min(least, list->contentHeight()); });
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            main.advance(0.015);
            return owner.queue.downloads().size() == 2;
        },
        10'000));
    EXPECT_LT(least, full - list->rowHeight());
    reload();
    EXPECT_EQ(list->contentHeight(), 2 * list->rowHeight());
}

}  // namespace
