
#include "app/history/historian.h"
#include "app/history/history_actions.h"
#include "app/history/history_listing.h"
#include "app/settings.h"
#include "core_fixture.h"
#include "engine/settings.h"
#include "platform/net/url.h"

using namespace Qt::Literals::StringLiterals;

namespace {

class HistoryTest : public Core {
protected:
    HistoryTest() {
        QDir().mkpath(folder.filePath(u"trash"_s));
        qputenv("XDG_DATA_HOME", QFile::encodeName(folder.filePath(u"trash"_s)));
        startHistory();
    }
    ~HistoryTest() override {
        controller->setHistory(nullptr);
        qunsetenv("XDG_DATA_HOME");
    }

    void startHistory() {
        historian.reset();
        historian = std::make_unique<app::DQHistorian>(supportFolder(), defaults, disks, main.loop);
        controller->setHistory(historian.get());
    }
    QString path() const { return supportFolder() + u"/History.plist"_s; }
    /// What the file holds once it is written. Invalid: there is none.
    QVariant saved() {
        historian.reset();
        const platform::FileContents contents = platform::readFile(path(), 64 << 20);
        const QVariant list =
            contents.error ? QVariant() : platform::readPropertyList(contents.data).value;
        startHistory();
        return list;
    }
    void writeFile(const QVariantList& entries) {
        ASSERT_FALSE(platform::writeFileAtomically(path(), platform::writePropertyList(entries)));
        startHistory();
    }
    /// A download that ends like this now. The file of a finished one is there.
    void end(const QString& name, engine::DQDownloadStatus status) {
        add({name});
        const engine::DownloadPtr ended = download(name);
        ended->userSettings().set(engine::keys::originalURL, address(name));
        if (status == engine::DQDownloadStatusDone) {
            const QString file = folder.filePath(name);
            ASSERT_FALSE(platform::writeFileAtomically(file, "data"));
            ended->setURL(platform::Url::fromFilePath(file));
            ended->userSettings().set(engine::keys::alias, platform::fileBookmark(file));
        }
        Core::end(*ended, status);
    }
    void finish(const QString& name) { end(name, engine::DQDownloadStatusDone); }
    QStringList urls() {
        QStringList urls;
        for (const app::HistoryEntry& entry : historian->history()) {
            urls.append(entry.originalURL.section(u'/', -1));
        }
        return urls;
    }
    app::HistoryListing listing(const QStringList& terms = {}) {
        return app::historyListing(historian->history(), defaults, terms);
    }
    QDateTime now() const {
        return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(main.clock.wall() * 1000));
    }
    static QStringList names(const app::HistoryListing& listing,
                             const std::vector<qsizetype>& items) {
        QStringList names;
        for (const qsizetype index : items) {
            names.append(listing.entry(index).name);
        }
        return names;
    }
    QVariantMap element(const QString& name, int daysAgo) const {
        return {{u"Name"_s, name},
                {u"Original URL"_s, u"http://files.example/"_s + name},
                {u"Date"_s, platform::archivedData(now().addDays(-daysAgo))}};
    }

    std::unique_ptr<app::DQHistorian> historian;
};

TEST_F(HistoryTest, RemembersAFinishedDownloadFiveSecondsLaterAndAfterARestart) {
    finish(u"a"_s);
    main.advance(4);
    finish(u"b"_s);
    main.advance(4.9);
    EXPECT_FALSE(platform::pathExists(path())) << "a burst writes once";
    main.advance(0.2);
    ASSERT_TRUE(main.waitUntil([this] { return platform::pathExists(path()); }));
    const QVariantMap first = saved().toList().value(0).toMap();
    EXPECT_EQ(first.keys(),
              QStringList({u"Alias"_s, u"Date"_s, u"Name"_s, u"Original URL"_s, u"Path"_s}));
    EXPECT_EQ(first[u"Original URL"_s].toString(), address(u"a"_s));
    EXPECT_EQ(platform::valueFromArchivedData(first[u"Date"_s].toByteArray()).toDateTime(),
              download(u"a"_s)->date());
    EXPECT_EQ(urls(), QStringList({u"a"_s, u"b"_s}));
    EXPECT_EQ(historian->history()[0].existingPath(), folder.filePath(u"a"_s));
}

TEST_F(HistoryTest, TakesUpWhatTheSettingsLetIn) {
    end(u"failed"_s, engine::DQDownloadStatusAborted);
    defaults.set(engine::settings::privateDownloading, true);
    finish(u"private"_s);
    defaults.set(engine::settings::privateDownloading, false);
    EXPECT_EQ(historian->numberOfItems(), 0);
    defaults.set(app::settings::historyOfCompleteDownloads, false);
    defaults.set(app::settings::historyByDateCompleted, true);
    main.advance(60);
    end(u"failed"_s, engine::DQDownloadStatusAborted);
    finish(u"a"_s);
    finish(u"b"_s);
    finish(u"c"_s);
    EXPECT_EQ(historian->history()[1].date, download(u"a"_s)->doneDate());
    defaults.set(app::settings::historyOfCompleteDownloads, true);
    EXPECT_EQ(urls(), QStringList({u"a"_s, u"b"_s, u"c"_s}));
    defaults.set(app::settings::numberOfHistoryItems, qint64{2});
    EXPECT_EQ(urls(), QStringList({u"b"_s, u"c"_s}));
    EXPECT_EQ(saved().toList().size(), 2);
    defaults.set(app::settings::numberOfHistoryItems, qint64{0});
    finish(u"d"_s);
    EXPECT_EQ(historian->numberOfItems(), 0);
    main.advance(5.1);
    EXPECT_FALSE(platform::pathExists(path()));
    defaults.set(app::settings::numberOfHistoryItems, qint64{-1});
    for (int count = 0; count < 300; ++count) {
        historian->add(*download(u"a"_s));
    }
    EXPECT_EQ(historian->numberOfItems(), 300);
}

TEST_F(HistoryTest, KeepsAFileThatItCannotUnderstand) {
    for (const QByteArray& damaged :
         {QByteArray("not a list"), QByteArray("<plist><dict/></plist>"), QByteArray(),
          QByteArray(1000, '\0')}) {
        ASSERT_FALSE(platform::writeFileAtomically(path(), damaged));
        startHistory();
        EXPECT_EQ(historian->numberOfItems(), 0);
        EXPECT_FALSE(platform::pathExists(path()));
        const QStringList kept =
            QDir(supportFolder()).entryList({u"History.plist.damaged-*"_s}, QDir::Files);
        ASSERT_EQ(kept.size(), 1);
        QFile file(supportFolder() + u'/' + kept[0]);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), damaged);
        file.remove();
    }
}

TEST_F(HistoryTest, LeavesAloneWhatItCannotRead) {
    ASSERT_TRUE(QDir().mkdir(path()));
    startHistory();
    add({u"a"_s});
    historian->add(*download(u"a"_s));
    historian.reset();
    EXPECT_TRUE(QFileInfo(path()).isDir());
}

TEST_F(HistoryTest, WritesBackWhatItDoesNotShow) {
    const QVariantList entries{QVariantMap{{u"Name"_s, u"no address"_s}, {u"Mine"_s, qint64{7}}},
                               QVariantMap{{u"Original URL"_s, u"http://x.example/"_s},
                                           {u"Name"_s, qint64{5}},
                                           {u"Date"_s, QByteArray("garbage")}}};
    writeFile(entries);
    EXPECT_TRUE(listing().isEmpty());
    finish(u"a"_s);
    EXPECT_EQ(saved().toList().mid(0, 2), entries);
}

TEST_F(HistoryTest, ListsTheNewestOnTopAndTheOthersByDay) {
    QVariantMap undated = element(u"undated"_s, 1);
    undated.remove(u"Date"_s);
    writeFile({element(u"old"_s, 400), undated, element(u"d"_s, 1), element(u"c"_s, 1),
               QVariantMap{{u"Name"_s, u"hidden"_s}}, element(u"b"_s, 0), element(u"a"_s, 0)});
    defaults.set(app::settings::numberOfTopLevelHistoryItems, qint64{1});
    const app::HistoryListing list = listing();
    EXPECT_EQ(names(list, list.items), QStringList{u"a"_s});
    ASSERT_EQ(list.days.size(), 3U);
    EXPECT_EQ(list.title(list.days[0], now()), u"Today"_s);
    EXPECT_EQ(list.title(list.days[1], now()), u"Yesterday"_s);
    EXPECT_EQ(names(list, list.days[1].items), QStringList({u"c"_s, u"d"_s}));
    EXPECT_TRUE(list.title(list.days[2], now())
                    .contains(QString::number(now().addDays(-400).date().year())));
    defaults.set(app::settings::numberOfTopLevelHistoryItems, qint64{0});
    EXPECT_TRUE(listing().items.empty());
    EXPECT_EQ(names(listing(), listing().days[0].items), QStringList({u"a"_s, u"b"_s}));
    defaults.set(app::settings::numberOfTopLevelHistoryItems, qint64{100});
    EXPECT_EQ(names(listing(), listing().items),
              QStringList({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"undated"_s, u"old"_s}));
}

TEST_F(HistoryTest, ActsOnEntries) {
    QStringList opened, revealed;
    workspace.openURL = [&](const platform::Url& url) {
        opened.append(url.absoluteString());
        return !url.absoluteString().contains(u"fails"_s);
    };
    workspace.revealFile = [&](const QString& file) {
        revealed.append(file);
        return true;
    };
    const app::HistoryActions actions(*controller);

    finish(u"a"_s);
    const app::HistoryEntry entry = historian->history()[0];
    ASSERT_TRUE(QDir(folder.path()).rename(u"a"_s, u"moved"_s));
    const QString moved = folder.filePath(u"moved"_s);
    EXPECT_EQ(entry.existingPath(), moved);
    actions.open(moved);
    actions.openOriginalURL(entry.originalURL);
    EXPECT_EQ(opened, QStringList({u"file://"_s + moved, address(u"a"_s)}));
    actions.reveal(moved);
    actions.copyPath(moved);
    EXPECT_EQ(frontEnd.copied.text, moved);
    actions.copyOriginalURL(entry.originalURL);
    EXPECT_EQ(frontEnd.copied.text, address(u"a"_s));
    EXPECT_EQ(frontEnd.beeps, 0);
    actions.openOriginalURL(u"http://fails.example/"_s);
    actions.openOriginalURL(u"no url"_s);
    actions.download(u"no url"_s);
    actions.open({});
    EXPECT_EQ(frontEnd.beeps, 4);

    actions.moveToTrash(moved);
    EXPECT_FALSE(platform::pathExists(moved));
    EXPECT_EQ(entry.existingPath(), std::nullopt);
    actions.moveToTrash(moved);
    EXPECT_EQ(frontEnd.beeps, 5);
    EXPECT_TRUE(queue().isEmpty()) << "it left the queue with its file";
    actions.download(entry.originalURL);
    EXPECT_EQ(queue(), QStringList{u"a"_s});
    actions.download(entry.originalURL);
    EXPECT_EQ(queue(), QStringList{u"a"_s}) << "it is in the queue already";
}

}  // namespace
