#include <benchmark/benchmark.h>

#include <QDateTime>
#include <QTemporaryDir>

#include "platform/base/user_defaults.h"
#include "platform/files/property_list.h"

using namespace Qt::Literals::StringLiterals;

namespace {

QVariantList queueOf(qint64 count) {
    QVariantList queue;
    const QByteArray date = platform::archivedData(QDateTime::currentDateTimeUtc());
    for (qint64 i = 0; i < count; ++i) {
        const QString name = u"Some Recording %1.mkv"_s.arg(i);
        queue.append(QVariantMap{
            {u"URL"_s, u"https://www.example.org/files/%1?session=a&part=b"_s.arg(name)},
            {u"Paused"_s, i % 2 == 0},
            {u"Date"_s, date},
            {u"Name"_s, name},
            {u"Download Folder"_s, u"~/Downloads"_s},
            {u"Referer"_s, u"https://www.example.org/list?page=7"_s},
            {u"Response URL"_s, u"https://mirror.example.net/files/%1"_s.arg(name)},
            {u"Resume Path"_s, u"~/Downloads/%1.orlop/%1"_s.arg(name)},
            {u"Acceleration Workers"_s, QVariantList{i, i + 1}},
            {u"Status Code"_s, qint64{200}},
        });
    }
    return queue;
}

void writeQueue(benchmark::State& state) {
    const QVariant queue = queueOf(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(platform::writePropertyList(queue));
}
BENCHMARK(writeQueue)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);

void readQueue(benchmark::State& state) {
    const QByteArray data = platform::writePropertyList(queueOf(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(platform::readPropertyList(data).value);
}
BENCHMARK(readQueue)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);

void openDefaults(benchmark::State& state) {
    const QTemporaryDir folder;
    {
        platform::UserDefaults defaults(folder.path(), u"bench"_s);
        QVariantMap rules;
        for (int i = 0; i < 100; ++i)
            defaults.setObject(u"Setting Number %1"_s.arg(i), i);
    }
    for (auto _ : state) {
        const platform::UserDefaults defaults(folder.path(), u"bench"_s);
        benchmark::DoNotOptimize(defaults.integerForKey(u"Setting Number 7"_s));
    }
}
BENCHMARK(openDefaults)->Unit(benchmark::kMicrosecond);

void readDefault(benchmark::State& state) {
    const QTemporaryDir folder;
    platform::UserDefaults defaults(folder.path(), u"bench"_s);
    static const platform::Setting<bool> setting{u"Bench Switch", true, true, ""};
    defaults.registerDefaults({{setting.name(), true}});
    for (auto _ : state)
        benchmark::DoNotOptimize(defaults.get(setting));
}
BENCHMARK(readDefault);

}  // namespace
