#include "ui/list/download_list.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>

#include "app/rows/rows.h"
#include "platform/base/user_defaults.h"
#include "support/main_loop.h"
#include "support/memory_front_end.h"
#include "support/memory_queue.h"
#include "ui/list/download_list_model.h"
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
                     [this](engine::DQDownload& download) { owner.queue.remove(download); }}};
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

TEST_F(DownloadListTest, PressesActionButtonsAndSelectsElsewhere) {
    fill(3);
    const engine::DownloadPtr second = owner.queue.downloads()[1];
    ASSERT_EQ(second->status(), engine::DQDownloadStatusPaused);
    const QSignalSpy selected(list.get(), &ui::DQDownloadList::selectionMade);

    // Pressed, dragged off and released: nothing happens.
    QTest::mousePress(viewport(), Qt::LeftButton, {}, buttonCentre(1, 1));
    EXPECT_EQ(state.highlightedActionButtonIndex(*second), 1U);
    QTest::mouseMove(viewport(), {60, 10});
    EXPECT_EQ(state.highlightedActionButtonIndex(*second), 0U);
    QTest::mouseRelease(viewport(), Qt::LeftButton, {}, {60, 10});
    EXPECT_EQ(second->status(), engine::DQDownloadStatusPaused);

    QTest::mouseClick(viewport(), Qt::LeftButton, {}, buttonCentre(1, 1));
    EXPECT_EQ(second->status(), engine::DQDownloadStatusQueued);
    EXPECT_EQ(state.highlightedActionButtonIndex(*second), 0U);
    EXPECT_EQ(selected.count(), 0);

    QTest::mouseClick(viewport(), Qt::LeftButton, {},
                      list->visualRect(list->rows().index(2)).center());
    ASSERT_EQ(selected.count(), 1);
    EXPECT_EQ(selected.at(0).at(0).value<QList<qsizetype>>(), QList<qsizetype>{2});

    QTest::mouseClick(viewport(), Qt::LeftButton, {}, buttonCentre(1, 2));
    EXPECT_EQ(second->status(), engine::DQDownloadStatusAborted);
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
    list->selectionModel()->setCurrentIndex(list->rows().index(1), QItemSelectionModel::NoUpdate);
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
