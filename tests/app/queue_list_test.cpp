#include <gmock/gmock.h>

#include <random>

#include "app/commands/bulk_commands.h"
#include "app/queue/download_order.h"
#include "app/queue/queue_view.h"
#include "app/settings.h"
#include "core_fixture.h"

using namespace Qt::Literals::StringLiterals;
using app::Downloads;

namespace {

class QueueList : public Core {
protected:
    void sortBy(qint64 criterion) { controller->changeSorting(criterion); }
    /// The order that sorting everything from scratch gives.
    QStringList expectedOrder() {
        return names(*app::QueueView(controller->queue(), defaults).sortedAndFilteredDownloads());
    }
};

TEST_F(QueueList, SortsByEachCriterionAndTurnsUpsideDown) {
    add({u"file10"_s, u"b"_s, u"file9"_s, u"a"_s});
    download(u"b"_s)->userSettings().set(engine::keys::name, u"z"_s);
    download(u"b"_s)->setName(u"z"_s);
    struct Case {
        qint64 tag;
        QStringList order;
    };
    const std::vector<Case> cases{
        {1, {u"a"_s, u"file9"_s, u"file10"_s, u"b"_s}},
        {3, {u"a"_s, u"b"_s, u"file9"_s, u"file10"_s}},
        {4, {u"a"_s, u"b"_s, u"file9"_s, u"file10"_s}},
        {99, {u"a"_s, u"file9"_s, u"file10"_s, u"b"_s}},
        {0, {u"file10"_s, u"b"_s, u"file9"_s, u"a"_s}},
    };
    for (const Case& test : cases) {
        controller->changeSorting(-1);
        sortBy(test.tag);
        EXPECT_EQ(shown(), test.order) << test.tag;
        controller->changeSorting(-2);
        EXPECT_EQ(shown(), QStringList(test.order.rbegin(), test.order.rend())) << test.tag;
        EXPECT_EQ(queue(), QStringList({u"file10"_s, u"b"_s, u"file9"_s, u"a"_s}));
    }
}

TEST_F(QueueList, SortsHoweverToleranceBreaksTransitivity) {
    std::mt19937 random(7);
    for (int round = 0; round < 50; ++round) {
        std::vector<int> values(random() % 40);
        for (int& value : values) {
            value = static_cast<int>(random() % 20);
        }
        std::vector<int> sorted = values, reference = values;
        app::mergeSort(sorted, [](int a, int b) { return a / 5 < b / 5; });
        std::stable_sort(reference.begin(), reference.end(),
                         [](int a, int b) { return a / 5 < b / 5; });
        EXPECT_EQ(sorted, reference);
        app::mergeSort(values, [](int a, int b) { return a + 3 < b; });
        std::sort(values.begin(), values.end());
        std::sort(sorted.begin(), sorted.end());
        EXPECT_EQ(values, sorted) << "elements were lost";
    }
}

TEST_F(QueueList, FiltersByNameOrAddressAndKnowsBlanksForNothing) {
    add({u"apple"_s, u"pear"_s});
    download(u"pear"_s)->setName(u"quince"_s);
    controller->setFilterText(u" \t\n"_s);
    EXPECT_FALSE(controller->isFiltering());
    EXPECT_EQ(controller->sortedAndFilteredDownloadsSnapshot().get()->size(), 2u);

    controller->setFilterText(u"QUI ce"_s);
    EXPECT_EQ(shown(), QStringList{u"pear"_s});
    EXPECT_EQ(names(controller->contextDownloads()), QStringList{u"pear"_s});
    controller->setFilterCriterion(u"URL"_s);
    EXPECT_EQ(shown(), QStringList());
    controller->setFilterText(u"pear"_s);
    EXPECT_EQ(shown(), QStringList{u"pear"_s});
}

TEST_F(QueueList, SelectionFollowsDownloadsAndIsRemembered) {
    add({u"c"_s, u"a"_s, u"b"_s});
    add({});
    controller->openURLs({*platform::Url::parse(address(u"a"_s))});
    controller->selectionDidChange({0, 2});
    EXPECT_EQ(selected(), QStringList({u"c"_s, u"b"_s}));
    sortBy(1);
    EXPECT_EQ(frontEnd.selectedRows, QList<qsizetype>({2, 3}));
    EXPECT_EQ(names(controller->contextDownloads()), QStringList({u"b"_s, u"c"_s}));
    controller->retry(controller->selectedDownloads());
    EXPECT_EQ(frontEnd.selectedRows, QList<qsizetype>({2, 3})) << "tried again, selected still";

    controller->setFilterText(u"c"_s);
    EXPECT_EQ(selected(), QStringList{u"c"_s}) << "what is hidden is not selected";
    controller->setFilterText({});
    controller->selectOriginalURLStrings({address(u"a"_s)});
    EXPECT_EQ(frontEnd.selectedRows, QList<qsizetype>({0, 1})) << "both of one address";
    restart();
    EXPECT_EQ(selected(), QStringList({u"a"_s, u"a"_s}));
    controller->selectDownloads({});
    EXPECT_TRUE(frontEnd.selectedRows.isEmpty());
    EXPECT_EQ(names(controller->contextDownloads()), shown());
}

TEST_F(QueueList, RearrangesTheQueueItself) {
    const QStringList all = numbered(30);
    add(all);
    EXPECT_FALSE(controller->canRearrange(1));
    EXPECT_TRUE(controller->canRearrange(-1));
    controller->rearrange(-1);
    EXPECT_EQ(queue(), QStringList(all.rbegin(), all.rend()));
    EXPECT_TRUE(controller->canRearrange(1));
    controller->rearrange(-2);
    EXPECT_NE(queue(), all);
    EXPECT_THAT(queue(), testing::UnorderedElementsAreArray(all));
    controller->rearrange(1);
    EXPECT_EQ(queue(), all);
}

TEST_F(QueueList, DragsRowsWithinTheUnsortedUnfilteredList) {
    add({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s});
    const auto dragged = [&](const QStringList& which) {
        Downloads downloads;
        for (const QString& name : which) {
            downloads.push_back(download(name));
        }
        return downloads;
    };
    struct Case {
        QStringList dragged;
        int row;
        bool inverted, changesSomething;
        QStringList queue;
    };
    const std::vector<Case> cases{
        {{u"b"_s}, 1, false, false, {u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s}},
        {{u"b"_s}, 2, false, false, {u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s}},
        {{u"b"_s}, 3, false, true, {u"a"_s, u"c"_s, u"b"_s, u"d"_s, u"e"_s}},
        {{u"b"_s, u"c"_s}, 3, false, false, {u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s}},
        {{u"b"_s, u"d"_s}, 3, false, true, {u"a"_s, u"c"_s, u"b"_s, u"d"_s, u"e"_s}},
        {{u"d"_s, u"e"_s}, 0, false, true, {u"d"_s, u"e"_s, u"a"_s, u"b"_s, u"c"_s}},
        {{u"e"_s, u"d"_s}, 5, true, true, {u"d"_s, u"e"_s, u"a"_s, u"b"_s, u"c"_s}},
    };
    for (const Case& test : cases) {
        controller->changeSorting(test.inverted ? -2 : -1);
        controller->rearrange(1);
        const Downloads moving = dragged(test.dragged);
        EXPECT_EQ(controller->canDropRows(moving, test.row), test.changesSomething)
            << test.dragged.join(u' ').toStdString() << " to " << test.row;
        EXPECT_TRUE(controller->dropRows(moving, test.row));
        EXPECT_EQ(queue(), test.queue) << test.dragged.join(u' ').toStdString();
    }
    EXPECT_TRUE(controller->canDragRows({0, 4}));
    EXPECT_FALSE(controller->canDragRows({5}));
    controller->setFilterText(u"a"_s);
    EXPECT_FALSE(controller->canDragRows({0}));
    controller->setFilterText({});
    sortBy(1);
    EXPECT_FALSE(controller->canDragRows({0}));
    const engine::DownloadPtr gone = download(u"a"_s);
    controller->queue().remove(*gone);
    EXPECT_FALSE(controller->dropRows({gone}, 0));
}

TEST_F(QueueList, ReloadsOnlyWhenRowsMove) {
    add({u"a"_s, u"b"_s, u"c"_s});
    sortBy(1);
    int reloads = frontEnd.reloads;
    progress(*download(u"b"_s));
    EXPECT_EQ(frontEnd.reloads, reloads);
    EXPECT_EQ(frontEnd.delayedRedraws.back(), 0.2);

    download(u"a"_s)->setName(u"zz"_s);
    progress(*download(u"a"_s));
    EXPECT_EQ(frontEnd.reloads, ++reloads);
    EXPECT_EQ(shown(), QStringList({u"b"_s, u"c"_s, u"a"_s}));

    // A hidden download comes into view with the next change of a shown one.
    controller->setFilterText(u"zz"_s);
    reloads = frontEnd.reloads;
    download(u"b"_s)->setName(u"zzz"_s);
    progress(*download(u"b"_s));
    EXPECT_EQ(frontEnd.reloads, reloads);
    progress(*download(u"a"_s));
    EXPECT_EQ(frontEnd.reloads, reloads + 1);
    EXPECT_EQ(shown(), QStringList({u"a"_s, u"b"_s}));
}

TEST_F(QueueList, PlacesChangedRowsAsSortingAnewWould) {
    add(numbered(40));
    std::mt19937 random(3);
    for (const qint64 tag : {-1, -2}) {
        controller->changeSorting(tag);
        sortBy(1);
        for (int change = 0; change < 200; ++change) {
            engine::DQDownload& changed = *controller->downloads()[random() % 40];
            changed.setName(u"n%1"_s.arg(random() % 20));
            progress(changed);
            ASSERT_EQ(shown(), expectedOrder());
        }
    }
}

TEST_F(QueueList, ReportsEndsInOrder) {
    add({u"a"_s, u"b"_s, u"c"_s});
    reporter.events.clear();
    end(*download(u"a"_s), engine::DQDownloadStatusDone);
    end(*download(u"b"_s), engine::DQDownloadStatusAborted);
    EXPECT_EQ(reporter.events, QStringList({u"Download Complete: a"_s, u"feedback"_s,
                                            u"Download Failed: b"_s, u"feedback"_s}));
    EXPECT_EQ(savedURLs(), QStringList({address(u"b"_s), address(u"c"_s)}));
    EXPECT_EQ(queue().size(), 3);

    reporter.events.clear();
    download(u"c"_s)->remove();
    main.settle();
    EXPECT_EQ(queue(), QStringList({u"a"_s, u"b"_s}));
    EXPECT_TRUE(reporter.events.isEmpty()) << "removed by the user";
    controller->clear();
    main.settle();
    EXPECT_TRUE(queue().isEmpty());
    EXPECT_TRUE(shown().isEmpty());
}

TEST_F(QueueList, ClearsByItselfIfAskedTo) {
    add({u"a"_s, u"b"_s});
    defaults.set(app::settings::autoClearLemons, true);
    end(*download(u"a"_s), engine::DQDownloadStatusDone);
    end(*download(u"b"_s), engine::DQDownloadStatusAborted);
    main.advance(4);
    EXPECT_EQ(queue(), QStringList{u"a"_s});
}

TEST_F(QueueList, ManyRemovalsShowTheListOnce) {
    add(numbered(2000));
    main.settle();
    const int reloads = frontEnd.reloads;
    app::remove(controller->queue(), controller->downloads());
    EXPECT_TRUE(queue().isEmpty());
    EXPECT_EQ(frontEnd.reloads, reloads + 1);
    EXPECT_EQ(controller->tally().count(engine::anyStatus), 0);
}

TEST_F(QueueList, CommandsOnManyRowsAreOneBatch) {
    add(numbered(500));
    const int reloads = frontEnd.reloads;
    app::pauseDownloads(controller->queue(), controller->downloads());
    EXPECT_EQ(controller->tally().count(engine::DQDownloadStatusPaused), 500);
    EXPECT_EQ(frontEnd.reloads, reloads + 1);
    app::queuePaused(controller->queue(), controller->downloads());
    EXPECT_EQ(controller->queue().admission().queuedDownloads().size(), 500U);
    EXPECT_EQ(frontEnd.reloads, reloads + 2);
}

TEST_F(QueueList, ShowsRowsByHowTheyStand) {
    add({u"a"_s, u"b"_s, u"c"_s});
    const app::StateFilter failed{app::RowState::Failed, {}};
    controller->setStateFilter(failed);
    EXPECT_TRUE(controller->isFiltering());
    EXPECT_EQ(shown(), QStringList());
    EXPECT_FALSE(controller->canDragRows({0})) << "rows are hidden between";
    end(*download(u"b"_s), engine::DQDownloadStatusAborted);
    EXPECT_EQ(shown(), QStringList{u"b"_s}) << "at once";
    controller->setFilterText(u"x"_s);
    EXPECT_EQ(shown(), QStringList());
    controller->setFilterText({});
    download(u"c"_s)->interrupt(platform::Error{u"d"_s, 1, u"t"_s, {}});
    EXPECT_EQ(shown(), QStringList({u"b"_s, u"c"_s}));
    const app::StateCounts counts = app::stateCounts(controller->downloads());
    EXPECT_EQ(counts.states, (std::array<qsizetype, 4>{0, 1, 2, 0}));

    download(u"a"_s)->userSettings().set(engine::keys::downloadFolder, u"/there"_s);
    controller->setStateFilter({{}, u"/there"_s});
    EXPECT_EQ(shown(), QStringList{u"a"_s});
    controller->setStateFilter({});
    EXPECT_FALSE(controller->isFiltering());
    EXPECT_EQ(shown(), queue());
}

}  // namespace
