#include <benchmark/benchmark.h>

#include <QDir>
#include <QTemporaryDir>

#include "links/format/byte_counts.h"
#include "links/format/dates.h"
#include "links/names/content_disposition.h"
#include "links/names/file_names.h"
#include "links/names/safe_file_name.h"
#include "links/names/sort_keys.h"
#include "links/recognition/exploded_urls.h"
#include "links/recognition/url_candidates.h"
#include "links/repair/percent_escapes.h"
#include "links/repair/url_unescaping.h"
#include "platform/base/user_defaults.h"
#include "platform/net/url.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int addressCount = 100'000;

/// Empty defaults for operations that read a setting.
void useEmptyDefaults() {
    static const QTemporaryDir folder;
    static platform::UserDefaults defaults(folder.path(), u"Bench"_s);
    platform::installStandardDefaults(&defaults);
}

QString pastedText(const QString& format) {
    QString text;
    for (int number = 0; number < addressCount; ++number)
        text.append(format.arg(number)).append(u'\n');
    return text;
}

qsizetype countCandidates(const QString& text) {
    auto candidates = links::URLCandidates::fromString(text, true);
    qsizetype count = 0;
    while (candidates.next())
        ++count;
    return count;
}

/// What the least conceivable work on a pasted text costs: looking at each unit of it.
void plainLoop(benchmark::State& state) {
    const QString text = pastedText(u"http://host.example/folder/file-%1.zip"_s);
    for (auto _ : state) {
        qsizetype lines = 0;
        for (const QChar unit : text)
            lines += unit == u'\n';
        benchmark::DoNotOptimize(lines);
    }
    state.SetItemsProcessed(state.iterations() * addressCount);
}
BENCHMARK(plainLoop)->Unit(benchmark::kMillisecond);

void candidatesOfText(benchmark::State& state, const char16_t* format) {
    useEmptyDefaults();
    const QString text = pastedText(QString::fromUtf16(format));
    for (auto _ : state)
        benchmark::DoNotOptimize(countCandidates(text));
    state.SetItemsProcessed(state.iterations() * addressCount);
}
BENCHMARK_CAPTURE(candidatesOfText, plain, u"http://host.example/folder/file-%1.zip")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(candidatesOfText, disguised, u"hxxp://host.example/folder/file-%1.zip")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(candidatesOfText, redirected,
                  u"http://r.example/go?to=http%3A%2F%2Fhost.example%2Ffile-%1.zip")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(candidatesOfText, markup, u"<a href=\"http://host.example/file-%1.zip\">%1</a>")
    ->Unit(benchmark::kMillisecond);

void candidatesOfRange(benchmark::State& state) {
    useEmptyDefaults();
    for (auto _ : state)
        benchmark::DoNotOptimize(countCandidates(u"http://host.example/{000001-100000}.zip"_s));
    state.SetItemsProcessed(state.iterations() * addressCount);
}
BENCHMARK(candidatesOfRange)->Unit(benchmark::kMillisecond);

void repairOfAddress(benchmark::State& state) {
    useEmptyDefaults();
    const QString address = u"http://host.example/folder/file.zip?x=1&amp;y=2"_s;
    for (auto _ : state)
        benchmark::DoNotOptimize(links::unescacpedURLStringWithReplacementsApplied(address, true));
}
BENCHMARK(repairOfAddress);

void nameOfURL(benchmark::State& state) {
    const auto url = *platform::Url::parse(u"http://host.example/folder/a+file%20name.zip"_s);
    for (auto _ : state)
        benchmark::DoNotOptimize(links::safeFileName(links::filename(url)));
}
BENCHMARK(nameOfURL);

void nameOfContentDisposition(benchmark::State& state) {
    const QString field = u"attachment; filename=\"x.zip\"; filename*=UTF-8''%C3%A4%20b.zip"_s;
    for (auto _ : state)
        benchmark::DoNotOptimize(links::filenameFromContentDisposition(field));
}
BENCHMARK(nameOfContentDisposition);

void percentEscapes(benchmark::State& state) {
    const QString text = u"http%3A%2F%2Fhost.example%2F%C3%A4%20b.zip"_s;
    for (auto _ : state)
        benchmark::DoNotOptimize(links::stringByReplacingPercentEscapesIfNecessary(text));
}
BENCHMARK(percentEscapes);

void sizeDescription(benchmark::State& state) {
    useEmptyDefaults();
    quint64 count = 1'234'567'890;
    for (auto _ : state)
        benchmark::DoNotOptimize(links::fileSizeDescriptionWithBytesCount(count++));
}
BENCHMARK(sizeDescription);

void fuzzyDate(benchmark::State& state) {
    const QDateTime now = QDateTime::currentDateTime();
    const QDateTime date = now.addDays(-1);
    for (auto _ : state)
        benchmark::DoNotOptimize(links::fuzzyDescription(date, now));
}
BENCHMARK(fuzzyDate);

void sortKey(benchmark::State& state) {
    useEmptyDefaults();
    const QString name = u"Theatre of the Absurd.mkv"_s;
    for (auto _ : state)
        benchmark::DoNotOptimize(links::sortString(name));
}
BENCHMARK(sortKey);

}  // namespace
