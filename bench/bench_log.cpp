// What logging costs whoever logs, and how fast the log is read.
#include <benchmark/benchmark.h>

#include <QTemporaryDir>
#include <memory>

#include "diagnostics/json_log_stream.h"
#include "diagnostics/log_lines.h"
#include "diagnostics/log_printer.h"
#include "platform/base/log.h"
#include "platform/base/log_store.h"
#include "platform/base/log_writer.h"

using namespace Qt::Literals::StringLiterals;

namespace {

const QString line =
    u"<DQDownload: example.org/files/archive.iso 0x55f0a1b2c3d4> got a 206 from <https://example.org/files/archive.iso> (worker: <DQHTTPRequestDownloadWorker: 55f0a1b2c3d8>)"_s;

void appendLine(benchmark::State& state) {
    const QTemporaryDir folder;
    const auto writer = std::make_shared<platform::LogWriter>(
        std::vector<platform::LogOutput>{platform::logStoreOutput(folder.path())},
        platform::LogSpool::make(folder.path()));
    platform::addLogSink(writer);
    for (auto _ : state)
        platform::log(line);
    platform::removeLogSink(writer);
}
BENCHMARK(appendLine)->Iterations(5'000)->Repetitions(3)->ReportAggregatesOnly();

void debugLineThatIsOff(benchmark::State& state) {
    int asked = 0;
    for (auto _ : state)
        platform::debugLog([&] { return ++asked, line; });
    benchmark::DoNotOptimize(asked);
}
BENCHMARK(debugLineThatIsOff);

/// A store with lines of this hour.
void fill(const QString& folder, int lines) {
    platform::LogStore store(folder, {1 << 20, 1 << 30, 30});
    for (int i = 0; i < lines; ++i) {
        store.append(platform::encodedLogRecord(
            {platform::logClock(), platform::LogLevel::Info, line + QString::number(i)}));
    }
}

QByteArray shown(const QString& folder) {
    QByteArray text;
    diagnostics::LogPrinter printer(diagnostics::LogRequest::Style::Json, false,
                                    [&](QByteArrayView bytes) {
                                        text += bytes;
                                        return true;
                                    });
    printer.begin({});
    diagnostics::takeStoredLines(
        folder, {}, [&](const structured::FlatObject& entry) { return printer.add(entry); });
    printer.end();
    return text;
}

void showHundredThousandLines(benchmark::State& state) {
    const QTemporaryDir folder;
    fill(folder.path(), 100'000);
    for (auto _ : state)
        benchmark::DoNotOptimize(shown(folder.path()));
}
BENCHMARK(showHundredThousandLines)->Unit(benchmark::kMillisecond);

void cutStream(benchmark::State& state) {
    const QTemporaryDir folder;
    fill(folder.path(), 100'000);
    const QByteArray text = shown(folder.path());
    constexpr qsizetype block = 256 * 1024;
    for (auto _ : state) {
        std::size_t entries = 0;
        diagnostics::JSONLogCutter cutter([&](diagnostics::LogEntries batch) {
            entries += batch.size();
            return true;
        });
        for (qsizetype at = 0; at < text.size(); at += block)
            cutter.append(QByteArrayView(text).sliced(at, std::min(block, text.size() - at)));
        if (entries != 100'000)
            state.SkipWithError("entries are missing");
    }
    state.SetBytesProcessed(state.iterations() * text.size());
}
BENCHMARK(cutStream)->Unit(benchmark::kMillisecond);

}  // namespace
