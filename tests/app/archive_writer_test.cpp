#include "app/queue/archive_writer.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "platform/files/files.h"
#include "platform/files/property_list.h"
#include "support/main_loop.h"

using namespace Qt::Literals::StringLiterals;

namespace {

QVariantList listOfSize(int size) {
    QVariantList list;
    for (int i = 0; i < size; ++i) {
        list.append(QVariantMap{{u"URL"_s, u"http://a.example/%1"_s.arg(i)}});
    }
    return list;
}

QVariantList writtenAt(const QString& path) {
    return platform::readPropertyList(platform::readFile(path, 1 << 26).data).value.toList();
}

TEST(ArchiveWriter, WritesTheLatestOfManyAndFinishesBeforeItGoes) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"Queue.plist"_s);
    support::MainLoop main;
    int reports = 0;
    {
        app::ArchiveWriter writer(path, main.loop, [&](const auto& error) {
            EXPECT_FALSE(error);
            ++reports;
        });
        for (int size = 0; size <= 300; ++size) {
            writer.write(listOfSize(size));
        }
        EXPECT_FALSE(writer.finish());
        EXPECT_FALSE(writer.isBusy());
        EXPECT_EQ(writtenAt(path).size(), 300);
        main.settle();
        EXPECT_GE(reports, 1);
        EXPECT_LT(reports, 300) << "every list was written, though newer ones waited";
        writer.write(listOfSize(7));
    }
    EXPECT_EQ(writtenAt(path).size(), 7);
    main.settle();
    EXPECT_LT(reports, 300);
}

TEST(ArchiveWriter, SaysWhyAFileCannotBeWrittenAndLeavesTheOldOneWhole) {
    const QTemporaryDir folder;
    const QString parent = folder.filePath(u"parent"_s);
    support::MainLoop main;
    std::optional<platform::Error> failure;
    app::ArchiveWriter writer(parent + u"/Queue.plist"_s, main.loop,
                              [&](const auto& error) { failure = error; });
    writer.write(listOfSize(1));
    EXPECT_TRUE(writer.finish());
    main.settle();
    ASSERT_TRUE(failure);
    EXPECT_TRUE(failure->is(platform::posixErrorDomain, ENOENT));

    ASSERT_TRUE(QDir().mkpath(parent));
    writer.write(listOfSize(2));
    EXPECT_FALSE(writer.finish());
    writer.write({QVariant::fromValue(QPair<int, int>())});
    EXPECT_TRUE(writer.finish()) << "no property list can hold a pair";
    EXPECT_EQ(writtenAt(parent + u"/Queue.plist"_s).size(), 2);
}

}  // namespace
