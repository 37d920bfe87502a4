#pragma once

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <functional>
#include <memory>

#include "engine/queue/download_queue.h"
#include "http/http_session.h"
#include "platform/base/user_defaults.h"
#include "platform/net/cookie_storage.h"
#include "support/http_server.h"
#include "support/log_recorder.h"
#include "support/main_loop.h"
#include "support/memory_queue.h"
#include "support/printers.h"

namespace engine_test {

/// A queue, empty folders, settings and a main loop on a manual clock.
class EngineTest : public ::testing::Test {
protected:
    EngineTest();
    ~EngineTest() override;

    [[nodiscard]] QString path(const QString& name) const { return folder.filePath(name); }
    /// In the general downloads folder.
    [[nodiscard]] QString downloadedPath(const QString& name) const;
    [[nodiscard]] const engine::Downloads& downloads() const { return owner.queue.downloads(); }
    void clearQueue();
    /// Returns when the disks have nothing to do any more, and what they report has arrived.
    void waitForDisks();
    [[nodiscard]] static QByteArray contents(const QString& path);
    static void write(const QString& path, const QByteArray& data);
    [[nodiscard]] bool waitForStatus(const engine::DQDownload& download, engine::StatusMask mask);
    /// Names in the general downloads folder, hidden ones included.
    [[nodiscard]] QStringList downloadedNames() const;
    template <typename Value>
    void set(const platform::Setting<Value>& setting, const Value& value) {
        defaults->set(setting, value);
    }

    QTemporaryDir folder;
    support::MainLoop main;
    std::unique_ptr<platform::UserDefaults> defaults;
    support::LogRecorder log;
    platform::Disks disks{main.loop};
    engine::Environment environment;
    support::MemoryQueue owner;
};

/// With a server and all that is needed to download from it.
class TransferTest : public EngineTest {
protected:
    TransferTest();
    ~TransferTest() override;

    /// A new download of a file that the server has.
    engine::DownloadPtr add(const QString& name = QStringLiteral("/file.bin"));
    /// Starts it and waits until it is neither queued nor downloading.
    void run(const engine::DownloadPtr& download);
    /// Until so many bytes of the whole file have arrived.
    [[nodiscard]] bool waitForBytes(const engine::DQDownload& download, qint64 count);
    /// Until `done`, while the main thread is busy with something else. False: real time ran out.
    [[nodiscard]] static bool waitBehindTheMainLoop(const std::function<bool()>& done);
    /// Serves `body` at "/file.bin" with an entity tag, and otherwise as `how` says.
    void serve(const QByteArray& body, const support::Reply& how = {},
               const QString& name = QStringLiteral("/file.bin"));
    [[nodiscard]] static support::Reply reply(const QByteArray& body, support::Reply how = {});
    /// Fetches the first `count` bytes of a file of the server's, and then pauses.
    engine::DownloadPtr pausedAfter(qint64 count, const support::Reply& reply);
    /// A new record with what the other's archive says, as after a restart of the program.
    engine::DownloadPtr restarted(const engine::DownloadPtr& download);
    [[nodiscard]] std::vector<std::string> requestedRanges() const;

    std::unique_ptr<platform::CookieStorage> cookies;
    support::HTTPServer server;
    std::unique_ptr<http::HTTPSession> session;
};

}  // namespace engine_test
