#pragma once

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "app/controller_roles.h"
#include "app/main_controller.h"
#include "app/rows/rows.h"
#include "engine/environment.h"
#include "engine/paths/support_folder.h"
#include "engine/record/user_settings.h"
#include "platform/base/user_defaults.h"
#include "platform/files/disks.h"
#include "platform/files/files.h"
#include "platform/files/property_list.h"
#include "support/fake_power.h"
#include "support/main_loop.h"
#include "support/memory_front_end.h"
#include "support/printers.h"

/// A controller with everything around it in memory and in a folder of its own. A modal window is
/// up, so that nothing is transferred.
class Core : public testing::Test {
protected:
    using Downloads = app::Downloads;

    /// Writes down what the controller reports, in order.
    class Reporter final : public app::StatusReporter {
    public:
        QStringList events;
        void playFeedback() override { events.append(QStringLiteral("feedback")); }
        bool sendUserNotification(const QString& identifier, const QString& title,
                                  const QString& informativeText, bool) override {
            EXPECT_EQ(identifier, title);
            events.append(identifier + QStringLiteral(": ") + informativeText);
            return true;
        }
    };

    Core() {
        frontEnd.isModal = true;
        platform::installStandardDefaults(&defaults);
        platform::registerSettings(defaults);
        environment.applicationSupportPath = [this] { return supportFolder(); };
        environment.isModalWindowUp = [this] { return frontEnd.isModal; };
        environment.beep = [this] { frontEnd.beep(); };
        QDir().mkpath(supportFolder());
        start();
    }
    ~Core() override {
        stop();
        platform::installStandardDefaults(nullptr);
    }

    void start() {
        controller = std::make_unique<app::DQMainController>(app::DQMainController::Surroundings{
            main.loop, defaults, disks, power, environment, workspace, frontEnd.frontEnd()});
        controller->setStatusReporter(&reporter);
        app::installMainController(controller.get());
    }
    void stop() {
        controller.reset();
        app::installMainController(nullptr);
        disks.waitForDone();
        main.settle();
    }
    void restart() {
        stop();
        start();
        controller->readQueue();
        controller->applicationDidFinishLaunching();
    }

    QString supportFolder() const { return folder.filePath(QStringLiteral("data")); }
    QString queuePath() const { return supportFolder() + QStringLiteral("/Queue.plist"); }

    /// What the queue's file holds once it is written. Invalid: there is none.
    QVariant savedQueue() {
        controller->finishWriting();
        const platform::FileContents contents = platform::readFile(queuePath(), 64 << 20);
        return contents.error ? QVariant() : platform::readPropertyList(contents.data).value;
    }
    QStringList savedURLs() {
        QStringList urls;
        for (const QVariant& element : savedQueue().toList()) {
            urls.append(element.toMap().value(engine::keys::url).toString());
        }
        return urls;
    }

    /// "a" is taken for "http://a.example/a".
    static QString address(const QString& name) {
        return QStringLiteral("http://%1.example/%1").arg(name);
    }
    /// "f0", "f1" and so on.
    static QStringList numbered(int count) {
        QStringList names;
        for (int number = 0; number < count; ++number) {
            names.append(QStringLiteral("f%1").arg(number));
        }
        return names;
    }
    void add(const QStringList& names) {
        QStringList addresses;
        for (const QString& name : names) {
            addresses.append(address(name));
        }
        controller->openURLs(controller->URLsFromCollection(addresses));
    }
    engine::DownloadPtr download(const QString& name) const {
        for (const auto& candidate : controller->downloads()) {
            if (candidate->originalURLString() == address(name)) {
                return candidate;
            }
        }
        return nullptr;
    }
    static QStringList names(const Downloads& downloads) {
        QStringList names;
        for (const auto& element : downloads) {
            names.append(element->originalURLString().section(u'/', -1));
        }
        return names;
    }
    QStringList queue() const { return names(controller->downloads()); }
    QStringList shown() { return names(controller->sortedAndFilteredDownloads()); }
    QStringList selected() { return names(controller->selectedDownloads()); }
    /// It has come further.
    static void progress(engine::DQDownload& download) {
        download.host().downloadDidChange(download);
    }
    static void setStatus(engine::DQDownload& download, engine::DQDownloadStatus status) {
        download.changeStatus(status, status == engine::DQDownloadStatusDownloading
                                          ? engine::StatusCause::Started
                                          : engine::StatusCause::Paused);
    }
    static void end(engine::DQDownload& download, engine::DQDownloadStatus status) {
        download.changeStatus(status, status == engine::DQDownloadStatusDone
                                          ? engine::StatusCause::Finished
                                          : engine::StatusCause::Failed);
    }

    QTemporaryDir folder;
    support::MainLoop main;
    platform::UserDefaults defaults{folder.filePath(QStringLiteral("config")),
                                    QStringLiteral("test")};
    platform::Disks disks{main.loop};
    engine::Environment environment;
    app::Workspace workspace;
    support::MemoryFrontEnd frontEnd;
    support::FakePower power;
    Reporter reporter;
    std::unique_ptr<app::DQMainController> controller;
};
