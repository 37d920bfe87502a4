#include "scripting/hand_overs/hand_overs.h"

#include "app/core_fixture.h"
#include "scripting/requests.h"

namespace {

namespace keys = engine::keys;
using namespace Qt::Literals::StringLiterals;
using scripting::HandOvers;
using Kind = HandOvers::Outcome::Kind;
using Error = HandOvers::Answer::Error;

class HandOversTest : public Core {
protected:
    HandOversTest() { restartHandOvers(); }
    ~HandOversTest() override { handOvers.reset(); }

    void restartHandOvers() {
        handOvers.reset();
        restart();
        handOvers = std::make_unique<HandOvers>(*controller, supportFolder() + u"/Hand-Overs"_s);
    }
    /// What is answered once time has been given for the disk, and none for the clock.
    HandOvers::Answer handOver(const QVariantMap& more, double delay = 0) {
        QVariantMap request{{u"id"_s, u"1"_s}, {u"address"_s, address(u"a"_s)}};
        request.insert(more);
        std::optional<HandOvers::Answer> answer;
        handOvers->handOver({scripting::parsedHandOver(request)},
                            [&](const auto& given) { answer = given; });
        if (delay > 0) {
            main.clock.advance(delay);
        }
        EXPECT_TRUE(main.waitUntil([&] {
            // The queue's file rests between two writings.
            main.clock.advance(delay > 0 ? 0.01 : 0);
            return answer.has_value();
        }));
        return answer.value_or(HandOvers::Answer{});
    }
    Kind outcome(const QVariantMap& more) {
        const HandOvers::Answer answer = handOver(more);
        EXPECT_EQ(answer.error, Error::None);
        return answer.outcomes.at(0).kind;
    }

    std::unique_ptr<HandOvers> handOvers;
};

TEST_F(HandOversTest, AnIdIsKnownForADayOverRestarts) {
    EXPECT_EQ(outcome({}), Kind::Saved);
    EXPECT_EQ(savedURLs(), QStringList{address(u"a"_s)});
    EXPECT_EQ(outcome({}), Kind::Known);
    controller->queue().remove(*download(u"a"_s));
    controller->writeArchiveBeforeQuitting(false);
    restartHandOvers();
    EXPECT_EQ(outcome({}), Kind::Known);
    main.clock.advance(25 * 60 * 60);
    EXPECT_EQ(outcome({}), Kind::Saved);
}

TEST_F(HandOversTest, ARecordThatWasSavedWithoutItsIdIsKnownAndStarts) {
    EXPECT_EQ(outcome({}), Kind::Saved);
    handOvers.reset();
    stop();
    QFile::remove(supportFolder() + u"/Hand-Overs"_s);
    start();
    restartHandOvers();
    EXPECT_TRUE(main.waitUntil([&] { return !download(u"a"_s)->isHeldBack(); }));
    EXPECT_EQ(download(u"a"_s)->status(), engine::DQDownloadStatusQueued);
    EXPECT_EQ(outcome({}), Kind::Known);
}

TEST_F(HandOversTest, PastTheDeadlineThereIsNothing) {
    EXPECT_EQ(handOver({{u"deadline"_s, 1500}}, 2).error, Error::TooLate);
    EXPECT_EQ(queue(), QStringList());
    EXPECT_EQ(savedURLs(), QStringList());
    EXPECT_EQ(handOver({}).error, Error::TooLate) << "its sender has gone its own way";
}

TEST_F(HandOversTest, WhatFailedGoesOnWithTheSameFileFromItsPage) {
    const QVariantMap again{{u"page"_s, u"http://page.example/"_s},
                            {u"name"_s, u"file.bin"_s},
                            {u"size"_s, qint64{1000}}};
    for (const bool isWanted : {false, true}) {
        const QString suffix = isWanted ? u"wanted"_s : u"not"_s;
        QVariantMap first(again);
        first.insert({{u"id"_s, u"1-"_s + suffix}, {u"address"_s, address(u"old"_s + suffix)}});
        EXPECT_EQ(outcome(first), Kind::Saved);
        const engine::DownloadPtr failed = download(u"old"_s + suffix);
        const QString bundle = folder.filePath(suffix + u".orlop"_s);
        QDir().mkpath(bundle);
        failed->setIntermediateDownloadTargetPath(bundle + u"/file.bin"_s);
        failed->userSettings().set(keys::expectedBytes, qint64{1000});
        failed->userSettings().set(keys::responseURL, address(u"expired"_s));
        end(*failed, engine::DQDownloadStatusAborted);

        frontEnd.alerts.clear();
        frontEnd.onConfirm = [&](const app::Alert& alert) {
            return alert.kind == app::Alert::Kind::Renewal && isWanted;
        };
        QVariantMap second(again);
        second.insert({{u"id"_s, u"2-"_s + suffix}, {u"address"_s, address(u"new"_s + suffix)}});
        EXPECT_EQ(outcome(second), Kind::Saved) << "whoever hands over does not wait for the user";
        main.settle();
        EXPECT_EQ(frontEnd.alerts.size(), 1U);
        const engine::DownloadPtr renewed = download(u"new"_s + suffix);
        EXPECT_FALSE(renewed->isHeldBack());
        EXPECT_EQ(queue().contains(u"old"_s + suffix), !isWanted);
        EXPECT_EQ(renewed->intermediateDownloadTargetPath(),
                  isWanted ? bundle + u"/file.bin"_s : QString());
        EXPECT_EQ(renewed->userSettings().string(keys::responseURL),
                  isWanted ? address(u"new"_s + suffix) : QString());
        controller->queue().removeIf([](auto&) { return true; });
    }
    // Of another size it is another file.
    QVariantMap other(again);
    other.insert({{u"size"_s, qint64{999}}, {u"id"_s, u"3"_s}});
    frontEnd.alerts.clear();
    EXPECT_EQ(outcome(other), Kind::Saved);
    main.settle();
    EXPECT_TRUE(frontEnd.alerts.empty());
}

}  // namespace
