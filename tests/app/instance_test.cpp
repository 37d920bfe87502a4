#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <atomic>
#include <thread>

#include "app/lifecycle/command_line.h"
#include "app/lifecycle/handover.h"
#include "app/lifecycle/instance_lock.h"
#include "app/lifecycle/launch_items.h"

using namespace Qt::Literals::StringLiterals;
using app::CommandLine;

namespace {

class Instances : public testing::Test {
protected:
    Instances() {
        support_ = folder_.filePath(u"data"_s);
        runtime_ = folder_.filePath(u"run"_s);
        QDir().mkpath(support_);
    }

    void processUntil(const std::function<bool()>& done) {
        QElapsedTimer timer;
        timer.start();
        while (!done() && timer.elapsed() < 10'000) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        }
        EXPECT_TRUE(done());
    }

    QString socketPath() const {
        const QStringList sockets =
            QDir(runtime_).entryList({u"*.socket"_s}, QDir::System | QDir::Files);
        return sockets.size() == 1 ? runtime_ + u'/' + sockets.first() : QString();
    }

    int argumentCount_ = 0;
    QCoreApplication application_{argumentCount_, nullptr};
    QTemporaryDir folder_;
    QString support_, runtime_;
};

TEST_F(Instances, OneClaimAtATimeAndNoneAfterItsOwnerIsGone) {
    app::InstanceLock second;
    {
        app::InstanceLock first;
        EXPECT_EQ(first.claim(support_), app::InstanceLock::Claim::Owned);
        app::InstanceLock other;
        EXPECT_EQ(other.claim(support_), app::InstanceLock::Claim::Taken);
    }
    EXPECT_EQ(second.claim(support_), app::InstanceLock::Claim::Owned);

    // A planted link is not followed.
    const QString trap = folder_.filePath(u"trap"_s);
    QDir().mkpath(trap);
    ASSERT_TRUE(QFile::link(folder_.filePath(u"elsewhere"_s), trap + u"/Queue.lock"_s));
    app::InstanceLock trapped;
    EXPECT_EQ(trapped.claim(trap), app::InstanceLock::Claim::Impossible);
    EXPECT_FALSE(trapped.problem().isEmpty());
    EXPECT_FALSE(QFile::exists(folder_.filePath(u"elsewhere"_s)));
}

TEST_F(Instances, HandsItemsToTheOwner) {
    std::vector<app::Handover> received;
    const app::HandoverReceiver receiver(support_, runtime_,
                                         [&](const auto& handover, const auto& saved) {
                                             received.push_back(handover);
                                             saved(true);
                                         });
    ASSERT_TRUE(receiver.problem().isEmpty());
    struct stat status {};
    ASSERT_EQ(::stat(QFile::encodeName(socketPath()).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777u, 0600u);

    QStringList many;
    for (int i = 0; i < 20'000; ++i) {
        many.append(u"http://ä.example/%1"_s.arg(i));
    }
    const std::vector<app::Handover> sent{
        {{u"http://a.example/x y"_s, u"/tmp/\u00e9.txt"_s}, u"token"_s}, {{}, {}}, {many, {}}};
    std::thread sender([&] {
        for (const app::Handover& handover : sent) {
            EXPECT_TRUE(app::handOver(handover, support_, runtime_).problem.isEmpty());
        }
    });
    processUntil([&] { return received.size() == sent.size(); });
    sender.join();
    for (std::size_t i = 0; i < sent.size(); ++i) {
        EXPECT_EQ(received.at(i).items, sent[i].items);
        EXPECT_EQ(received.at(i).activationToken, sent[i].activationToken);
    }
}

TEST_F(Instances, RefusesAMessageBeyondBoundsAndSurvivesHalfOnes) {
    int received = 0;
    const app::HandoverReceiver receiver(support_, runtime_, [&](const auto&, const auto& saved) {
        ++received;
        saved(true);
    });
    const QByteArray path = QFile::encodeName(socketPath());
    const auto send = [&](const QByteArray& bytes) {
        const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.toStdString().copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address),
                  0);
        EXPECT_EQ(::write(socket, bytes.data(), static_cast<std::size_t>(bytes.size())),
                  bytes.size());
        return socket;
    };
    const int half = send(QByteArray("\0\0\0\x05xx", 6));
    ::close(send(QByteArray("\0\0", 2)));
    const int huge = send(QByteArray("\x7f\xff\xff\xffrest", 8));
    char byte = 0;
    processUntil([&] { return ::recv(huge, &byte, 1, MSG_DONTWAIT) == 0; });
    ::close(huge);
    EXPECT_EQ(received, 0);

    EXPECT_EQ(::write(half, "abc", 3), 3);
    processUntil([&] { return ::recv(half, &byte, 1, MSG_DONTWAIT | MSG_PEEK) == 1; });
    EXPECT_EQ(received, 0) << "not before its sender has heard the answer";
    EXPECT_EQ(::write(half, "!", 1), 1);
    processUntil([&] { return received == 1; });
    ::close(half);
}

TEST_F(Instances, DeliversOnceWhatIsSentAgainAndDropsWhatWasGivenUp) {
    QStringList received;
    const app::HandoverReceiver receiver(support_, runtime_,
                                         [&](const auto& handover, const auto& saved) {
                                             received += handover.items;
                                             saved(true);
                                         });
    // Nothing is processed here meanwhile: the sender waits in vain, and goes.
    EXPECT_FALSE(
        app::handOver({{u"given up"_s}, {}, u"1"_s}, support_, runtime_).problem.isEmpty());
    std::thread sender([&] {
        for (const QString& item : {u"first"_s, u"again"_s})
            EXPECT_TRUE(app::handOver({{item}, {}, u"2"_s}, support_, runtime_).problem.isEmpty());
        EXPECT_TRUE(app::handOver({{u"last"_s}, {}, u"3"_s}, support_, runtime_).problem.isEmpty());
    });
    processUntil([&] { return received.contains(u"last"_s); });
    sender.join();
    EXPECT_EQ(received, QStringList({u"first"_s, u"last"_s}));
}

TEST_F(Instances, TheSenderHearsNothingBeforeWhatItHandedOverIsSaved) {
    std::vector<app::HandoverReceiver::Saved> saved;
    app::HandoverReceiver receiver(support_, runtime_,
                                   [&](const auto&, const auto& done) { saved.push_back(done); });
    enum class Fate { Saved, NotSaved, OwnerGone };
    for (const Fate fate : {Fate::Saved, Fate::NotSaved, Fate::OwnerGone}) {
        app::HandoverEnd end;
        std::atomic<bool> hasEnded = false;
        std::thread sender([&, id = QString::number(static_cast<int>(fate))] {
            end = app::handOver({{u"http://a.example/x"_s}, {}, id}, support_, runtime_);
            hasEnded = true;
        });
        processUntil([&] { return saved.size() == 1; });
        EXPECT_FALSE(hasEnded);
        if (fate == Fate::OwnerGone) {
            receiver.close();
        } else {
            saved.front()(fate == Fate::Saved);
        }
        sender.join();
        EXPECT_EQ(end.problem.isEmpty(), fate == Fate::Saved);
        EXPECT_EQ(end.isFinal, fate != Fate::OwnerGone) << "another owner may take it";
        saved.clear();
    }
}

TEST_F(Instances, AFloodOfSendersKeepsNobodyElseOut) {
    int received = 0;
    const app::HandoverReceiver receiver(support_, runtime_, [&](const auto&, const auto& saved) {
        ++received;
        saved(true);
    });
    // Each says that four megabytes are to come, sends what it can, and waits.
    const QByteArray path = QFile::encodeName(socketPath());
    std::vector<std::unique_ptr<QLocalSocket>> flood;
    for (int i = 0; i < 300; ++i) {
        flood.push_back(std::make_unique<QLocalSocket>());
        flood.back()->connectToServer(QString::fromLocal8Bit(path));
        flood.back()->write(QByteArray("\x00\x40\x00\x00", 4) + QByteArray(60'000, 'x'));
        flood.back()->flush();
        QCoreApplication::processEvents();
    }
    std::atomic<int> taken = 0;
    std::thread sender([&] {
        const QStringList large(5000, u"http://a.example/long"_s);
        for (const QStringList& items : {QStringList{u"http://a.example/x"_s}, large}) {
            taken += app::handOver({items, {}, {}}, support_, runtime_).problem.isEmpty() ? 1 : 0;
        }
    });
    processUntil([&] { return taken == 1; });
    flood.clear();
    processUntil([&] { return taken == 2; });
    sender.join();
    EXPECT_EQ(received, 2);
}

TEST_F(Instances, TellsPathsFromAddresses) {
    const QString file = support_ + u"/list.txt"_s;
    ASSERT_TRUE(QFile(file).open(QIODevice::WriteOnly));
    QDir::setCurrent(support_);
    const app::LaunchItems items =
        app::launchItems({u"list.txt"_s, u"http://a.example/x"_s, file, u""_s, u"gone.txt"_s});
    EXPECT_EQ(items.paths, QStringList({QDir::current().absoluteFilePath(u"list.txt"_s), file}));
    EXPECT_EQ(items.addresses, QStringList({u"http://a.example/x"_s, u"gone.txt"_s}));
    QDir::setCurrent(u"/"_s);
}

TEST(CommandLineTest, TellsSettingsFromAddresses) {
    const CommandLine line = app::parsedCommandLine(
        {u"-Number Of Concurrent Downloads"_s, u"9"_s, u"http://a/b"_s, u"-"_s,
         u"-Downloads Folder"_s, u"-odd"_s, u"--"_s, u"-file"_s, u"--help"_s});
    EXPECT_EQ(line.action, CommandLine::Action::Run);
    EXPECT_TRUE(line.problem.isEmpty());
    EXPECT_EQ(line.settings, (QVariantMap{{u"Number Of Concurrent Downloads"_s, u"9"_s},
                                          {u"Downloads Folder"_s, u"-odd"_s}}));
    EXPECT_EQ(line.items, (QStringList{u"http://a/b"_s, u"-"_s, u"-file"_s, u"--help"_s}));
}

TEST(CommandLineTest, RefusesSettingsThatNobodyKnows) {
    const auto problem = [](const QString& key) {
        return app::parsedCommandLine({u'-' + key, u"x"_s}).problem;
    };
    EXPECT_EQ(problem(u"Downlods Folder"_s),
              u"there is no setting \"Downlods Folder\"; did you mean \"Downloads Folder\"?"_s);
    EXPECT_EQ(problem(u"auto-start"_s),
              u"there is no setting \"auto-start\"; did you mean \"Auto-Start\"?"_s);
    EXPECT_TRUE(problem(u"Auto-Start"_s).isEmpty());
    EXPECT_TRUE(problem(u"session"_s).isEmpty()) << "what a session manager adds";
    EXPECT_TRUE(app::parsedCommandLine({u"-session"_s, u"x"_s}).settings.isEmpty());
}

}  // namespace
