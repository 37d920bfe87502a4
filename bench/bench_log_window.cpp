// How long the log window keeps the main thread with 100,000 lines: filling, scrolling, arriving.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QListView>
#include <QScrollBar>
#include <QTemporaryDir>
#include <algorithm>
#include <memory>

#include "platform/base/clock.h"
#include "platform/base/log_record.h"
#include "platform/base/log_store.h"
#include "platform/base/run_loop.h"
#include "platform/base/user_defaults.h"
#include "ui/log/log_window.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int lines = 100'000;

/// The window with all lines in it, and the real tool behind it.
struct FilledWindow {
    FilledWindow() {
        qputenv("XDG_STATE_HOME", folder.path().toUtf8());
        platform::installMainRunLoop(&loop);
        platform::LogStore store(platform::logStoreFolder(), {1 << 20, 1 << 30, 30});
        for (int i = 0; i < lines; ++i) {
            store.append(platform::encodedLogRecord(
                {platform::logClock(), platform::LogLevel::Info,
                 u"<https://example.org/files/archive-%1.iso> got a 206"_s.arg(i)}));
        }
    }
    ~FilledWindow() {
        window.reset();
        platform::installMainRunLoop(nullptr);
    }

    /// The longest turn of the main loop, in seconds, until so many rows are there.
    double fill() {
        window = std::make_unique<ui::LogWindow>(defaults);
        window->displayLog();
        list = window->findChild<QListView*>();
        double longest = 0;
        while (list->model()->rowCount() < lines) {
            QElapsedTimer turn;
            turn.start();
            QCoreApplication::processEvents(QEventLoop::AllEvents);
            longest = std::max(longest, static_cast<double>(turn.nsecsElapsed()) / 1e9);
        }
        return longest;
    }

    QTemporaryDir folder;
    platform::SystemClock clock;
    platform::RunLoop loop{clock};
    platform::QtRunLoopDriver driver{loop};
    platform::UserDefaults defaults{folder.path(), u"bench"_s};
    std::unique_ptr<ui::LogWindow> window;
    QListView* list = nullptr;
};

void fillAndScroll(benchmark::State& state) {
    FilledWindow filled;
    const double longest = filled.fill();
    QScrollBar& bar = *filled.list->verticalScrollBar();
    int at = 0;
    for (auto _ : state) {
        at = (at + bar.pageStep()) % bar.maximum();
        bar.setValue(at);
        filled.list->viewport()->repaint();
    }
    state.counters["longest turn while filling (s)"] = longest;
}
BENCHMARK(fillAndScroll)->Unit(benchmark::kMillisecond)->Iterations(500);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
