#include "ui/log/log_window.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <random>

#include "platform/base/log_record.h"
#include "platform/base/log_store.h"
#include "support/main_loop.h"
#include "ui/log/log_find_bar.h"
#include "ui/log/log_model.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using diagnostics::LogEntry;
using diagnostics::LogRow;

std::vector<LogRow> rowsOf(int count) {
    std::vector<LogRow> rows;
    for (int i = 0; i < count; ++i) {
        LogEntry entry;
        entry.time = i;
        entry.eventMessage = u"message %1"_s.arg(i);
        rows.push_back({LogRow::Kind::Entry, std::make_shared<const LogEntry>(entry), 1});
    }
    return rows;
}

TEST(LogModel, TellsViewsWhatCameAndWent) {
    ui::LogModel model;
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    const std::vector<LogRow> all = rowsOf(40);
    std::mt19937 random(1);
    for (int round = 0; round < 300; ++round) {
        std::vector<LogRow> shown;
        const unsigned kept = 1 + random() % 4;
        for (const LogRow& row : all) {
            if (random() % kept == 0)
                shown.push_back(row);
        }
        // The one in the middle stays in sight of a view.
        const QPersistentModelIndex middle =
            model.rowCount() > 1 ? QPersistentModelIndex(model.index(model.rowCount() - 1, 0))
                                 : QPersistentModelIndex();
        const QString text = middle.data().toString();
        model.setRows(shown);
        ASSERT_EQ(model.rowCount(), static_cast<int>(shown.size()) + 1);
        for (std::size_t i = 0; i < shown.size(); ++i) {
            const QModelIndex index = model.index(static_cast<int>(i) + 1, 0);
            ASSERT_TRUE(index.data().toString().endsWith(shown[i].entry->eventMessage));
        }
        if (middle.isValid()) {
            ASSERT_EQ(middle.data().toString(), text);
        }
    }
}

TEST(LogFindBar, GoesRoundAndSaysWhenThereIsNothing) {
    ui::LogModel model;
    model.setRows(rowsOf(30));
    QWidget window;
    QListView list(&window);
    list.setModel(&model);
    ui::LogFindBar bar(list, &window);
    auto* field = bar.findChild<QLineEdit*>();
    QTest::keyClicks(field, u"MESSAGE 2"_s);
    EXPECT_EQ(list.currentIndex().row(), 3);
    for (const int row : {21, 22}) {
        bar.find(false);
        EXPECT_EQ(list.currentIndex().row(), row);
    }
    for (const int row : {21, 3, 30}) {
        bar.find(true);
        EXPECT_EQ(list.currentIndex().row(), row);
    }
    QTest::keyClicks(field, u"x"_s);
    EXPECT_EQ(list.currentIndex().row(), 30);
    EXPECT_FALSE(bar.findChild<QLabel*>()->text().isEmpty());
}

/// The window over a store of its own, with the real tool.
class LogWindow : public testing::Test {
protected:
    LogWindow() { qputenv("XDG_STATE_HOME", folder.path().toUtf8()); }
    ~LogWindow() override { qunsetenv("XDG_STATE_HOME"); }

    static void store(const QString& line) {
        ASSERT_TRUE(platform::LogStore(platform::logStoreFolder())
                        .append(platform::encodedLogRecord(
                            {platform::logClock(), platform::LogLevel::Info, line})));
    }
    static bool waitFor(const std::function<bool()>& condition) {
        return QTest::qWaitFor(condition, 20'000);
    }

    const QTemporaryDir folder;
    platform::SystemClock clock;
    platform::RunLoop loop{clock};
    platform::UserDefaults defaults{folder.path(), u"test"_s};
};

TEST_F(LogWindow, ShowsPastAndLiveAndKeepsItsPlaceWhenScrolledUp) {
    platform::installMainRunLoop(&loop);
    {
        const platform::QtRunLoopDriver driver(loop);
        for (int i = 0; i < 200; ++i)
            store(u"line %1 end"_s.arg(i));
        ui::LogWindow window(defaults);
        ASSERT_TRUE(window.canDisplayLog());
        window.displayLog();
        auto* list = window.findChild<QListView*>();
        const QAbstractItemModel& model = *list->model();
        ASSERT_TRUE(waitFor([&] { return model.rowCount() == 201; }));
        EXPECT_EQ(list->verticalScrollBar()->value(), list->verticalScrollBar()->maximum());
        store(u"live"_s);
        ASSERT_TRUE(waitFor([&] { return model.rowCount() == 202; }));
        EXPECT_EQ(list->verticalScrollBar()->value(), list->verticalScrollBar()->maximum());
        list->verticalScrollBar()->setValue(555);
        const QString top = list->indexAt({1, 1}).data().toString();
        store(u"two\nlines"_s);
        ASSERT_TRUE(waitFor([&] { return model.rowCount() == 203; }));
        EXPECT_EQ(list->verticalScrollBar()->value(), 555);
        EXPECT_EQ(list->indexAt({1, 1}).data().toString(), top);
        list->setCurrentIndex(model.index(202, 0));
        EXPECT_TRUE(window.findChild<QPlainTextEdit*>()->toPlainText().endsWith(u"two\nlines"_s));
        window.close();
        EXPECT_TRUE(waitFor([&] { return model.rowCount() == 1; }));
    }
    platform::installMainRunLoop(nullptr);
}

}  // namespace
