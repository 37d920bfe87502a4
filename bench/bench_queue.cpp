// Ten thousand downloads, and what the core does with them: start, progress reports, saving,
// sorting, intake.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <QDir>
#include <QTemporaryDir>

#include "app/commands/bulk_commands.h"
#include "app/controller_roles.h"
#include "app/main_controller.h"
#include "app/settings.h"
#include "engine/environment.h"
#include "engine/paths/support_folder.h"
#include "engine/record/user_settings.h"
#include "platform/base/run_loop.h"
#include "platform/base/user_defaults.h"
#include "platform/files/disks.h"
#include "platform/files/files.h"
#include "platform/files/property_list.h"
#include "support/fake_power.h"
#include "support/memory_front_end.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int queueLength = 10'000;
constexpr int intakeLength = 100'000;

/// Everything around a controller, in memory and in a folder of its own.
class Core {
public:
    Core() {
        frontEnd_.isModal = true;
        platform::installMainRunLoop(&loop_);
        platform::installStandardDefaults(&defaults_);
        platform::registerSettings(defaults_);
        environment_.applicationSupportPath = [this] { return folder_.path(); };
        environment_.isModalWindowUp = [] { return true; };
    }
    ~Core() {
        stop();
        platform::installStandardDefaults(nullptr);
        platform::installMainRunLoop(nullptr);
    }

    app::DQMainController& start() {
        controller_ = std::make_unique<app::DQMainController>(app::DQMainController::Surroundings{
            loop_, defaults_, disks_, power_, environment_, workspace_, frontEnd_.frontEnd()});
        app::installMainController(controller_.get());
        return *controller_;
    }
    void stop() {
        controller_.reset();
        app::installMainController(nullptr);
        settle();
    }
    /// A queue of paused downloads on disk.
    void writeQueue() const {
        QVariantList archives;
        for (int i = 0; i < queueLength; ++i) {
            archives.append(QVariantMap{
                {engine::keys::url,
                 u"http://host%1.example/folder/file-%2.zip"_s.arg(i % 97).arg(i)},
                {engine::keys::paused, true},
                {engine::keys::name, u"file-%1.zip"_s.arg(i)},
                {engine::keys::date,
                 platform::archivedData(QDateTime::fromSecsSinceEpoch(1'700'000'000 + i))}});
        }
        static_cast<void>(platform::writeFileAtomically(engine::queueArchivePath(environment_),
                                                        platform::writePropertyList(archives)));
    }
    void settle() {
        while (loop_.runDue()) {
        }
    }
    platform::UserDefaults& defaults() { return defaults_; }

private:
    QTemporaryDir folder_;
    platform::SystemClock clock_;
    platform::RunLoop loop_{clock_};
    platform::Disks disks_{loop_};
    engine::Environment environment_;
    app::Workspace workspace_;
    platform::UserDefaults defaults_{folder_.filePath(u"config"_s), u"bench"_s};
    support::MemoryFrontEnd frontEnd_;
    support::FakePower power_;
    std::unique_ptr<app::DQMainController> controller_;
};

qint64 bytesInUse() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<qint64>(info.uordblks + info.hblkhd);
}

void restore(benchmark::State& state) {
    Core core;
    core.writeQueue();
    qint64 bytes = 0;
    for (auto _ : state) {
        const qint64 before = bytesInUse();
        app::DQMainController& controller = core.start();
        controller.readQueue();
        controller.applicationDidFinishLaunching();
        bytes = bytesInUse() - before;
        state.PauseTiming();
        core.stop();
        state.ResumeTiming();
    }
    state.counters["bytes a record"] = static_cast<double>(bytes) / queueLength;
}
BENCHMARK(restore)->Unit(benchmark::kMillisecond);

/// With the argument as sorting criterion.
void progressReport(benchmark::State& state) {
    Core core;
    core.writeQueue();
    core.defaults().set(app::settings::sortingCriterion, qint64{state.range(0)});
    app::DQMainController& controller = core.start();
    controller.readQueue();
    controller.applicationDidFinishLaunching();
    engine::DQDownload& download = *controller.downloads()[queueLength / 2];
    for (auto _ : state) {
        download.host().downloadDidChange(download);
    }
}
BENCHMARK(progressReport)->Arg(0)->Arg(1)->Arg(2);

void sortByName(benchmark::State& state) {
    Core core;
    core.writeQueue();
    app::DQMainController& controller = core.start();
    controller.readQueue();
    controller.changeSorting(1);
    for (auto _ : state) {
        controller.updateDownloadListAndStatus();
    }
}
BENCHMARK(sortByName)->Unit(benchmark::kMillisecond);

/// Every second download finishes, each of which saves the queue.
void finishMany(benchmark::State& state) {
    Core core;
    core.writeQueue();
    for (auto _ : state) {
        state.PauseTiming();
        app::DQMainController& controller = core.start();
        controller.readQueue();
        controller.applicationDidFinishLaunching();
        state.ResumeTiming();
        for (int i = 0; i < queueLength; i += 2) {
            engine::DQDownload& download = *controller.downloads()[static_cast<std::size_t>(i)];
            download.changeStatus(engine::DQDownloadStatusDone, engine::StatusCause::Finished);
            core.settle();
        }
        controller.finishWriting();
        state.PauseTiming();
        core.stop();
        core.writeQueue();
        state.ResumeTiming();
    }
}
BENCHMARK(finishMany)->Unit(benchmark::kMillisecond)->Iterations(3);

using ManyRows = void (*)(engine::DownloadQueue&, const app::Downloads&);

/// A command on all rows, and what follows at the next turns of the loop.
void commandOnAll(benchmark::State& state, ManyRows prepare, ManyRows command) {
    Core core;
    core.writeQueue();
    for (auto _ : state) {
        state.PauseTiming();
        app::DQMainController& controller = core.start();
        controller.readQueue();
        controller.applicationDidFinishLaunching();
        prepare(controller.queue(), controller.downloads());
        core.settle();
        state.ResumeTiming();
        command(controller.queue(), app::Downloads(controller.downloads()));
        core.settle();
        state.PauseTiming();
        core.stop();
        core.writeQueue();
        state.ResumeTiming();
    }
}
BENCHMARK_CAPTURE(commandOnAll, remove, app::pauseDownloads, app::remove)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);
BENCHMARK_CAPTURE(commandOnAll, pause, app::queuePaused, app::pauseDownloads)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);
BENCHMARK_CAPTURE(commandOnAll, resume, app::pauseDownloads, app::queuePaused)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

void takeIn(benchmark::State& state, const QString& text) {
    Core core;
    for (auto _ : state) {
        app::DQMainController& controller = core.start();
        controller.openText(text);
        core.settle();
        state.PauseTiming();
        if (controller.numberOfDownloads() != intakeLength) {
            state.SkipWithError("addresses were lost");
        }
        controller.finishWriting();
        core.stop();
        state.ResumeTiming();
    }
}

void takeInLines(benchmark::State& state) {
    QString text;
    for (int i = 0; i < intakeLength; ++i) {
        text += u"http://host.example/folder/file-%1.zip\n"_s.arg(i);
    }
    takeIn(state, text);
}
BENCHMARK(takeInLines)->Unit(benchmark::kMillisecond)->Iterations(1);

void takeInRange(benchmark::State& state) {
    takeIn(state, u"http://host.example/folder/file-{1-%1}.zip"_s.arg(intakeLength));
}
BENCHMARK(takeInRange)->Unit(benchmark::kMillisecond)->Iterations(1);

/// One address more, looked up among all that the queue has.
void lookUpDuplicate(benchmark::State& state) {
    Core core;
    core.writeQueue();
    app::DQMainController& controller = core.start();
    controller.readQueue();
    for (auto _ : state) {
        benchmark::DoNotOptimize(controller.URLsFromString(u"http://host.example/new.zip"_s));
    }
}
BENCHMARK(lookUpDuplicate);

}  // namespace
