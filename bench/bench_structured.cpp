// Reading and writing 10,000 records in each spelling, and what nlohmann-json itself takes for
// parsing and dumping the same records as JSON.
#include <benchmark/benchmark.h>

#include <nlohmann/json.hpp>

#include "platform/files/property_list.h"
#include "structured/json/json_reader.h"
#include "structured/json/json_writer.h"
#include "structured/shorthand/lson_serialization.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using Serialization = structured::DQLSONSerialization;

const QVariant& records() {
    static const QVariant value = [] {
        constexpr int count = 10'000;
        QVariantMap list;
        for (qint64 i = 0; i < count; ++i) {
            const QString number = QString::number(i);
            list.insert(
                u"record "_s + number,
                QVariantMap{
                    {u"URL"_s, u"https://host.example/files/archive-%1.zip?x=\"y\""_s.arg(number)},
                    {u"Name"_s, u"Archive – %1.zip"_s.arg(number)},
                    {u"Size"_s, i * 1'000'003},
                    {u"Progress"_s, static_cast<double>(i) / count},
                    {u"Paused"_s, i % 2 == 0},
                    {u"Workers"_s, QVariantList{i, i + 1, i + 2}}});
        }
        return QVariant(list);
    }();
    return value;
}

void reportSize(benchmark::State& state, qsizetype bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * bytes);
}

void readText(benchmark::State& state, const QString& text) {
    for (auto _ : state) {
        const structured::ParsedText parsed = Serialization::objectWithString(text);
        if (!parsed.object.isValid())
            state.SkipWithError("cannot be read");
    }
    reportSize(state, text.toUtf8().size());
}

template <typename Write>
void writeText(benchmark::State& state, const Write& write) {
    for (auto _ : state) {
        const auto text = write();
        benchmark::DoNotOptimize(text);
    }
    reportSize(state, write()->toUtf8().size());
}

std::optional<QString> json() {
    return Serialization::JSONStringWithObject(records(), false, false);
}
std::optional<QString> jsonShorthand() {
    return Serialization::JSONStringWithObject(records(), true, true);
}
std::optional<QString> xml() {
    return Serialization::XMLStringWithObject(records(), false);
}
std::optional<QString> xmlShorthand() {
    return Serialization::XMLStringWithObject(records(), true);
}

void readJson(benchmark::State& state) {
    readText(state, *json());
}
void readJsonShorthand(benchmark::State& state) {
    readText(state, *jsonShorthand());
}
void readXml(benchmark::State& state) {
    readText(state, *xml());
}
void readXmlShorthand(benchmark::State& state) {
    readText(state, *xmlShorthand());
}
void writeJson(benchmark::State& state) {
    writeText(state, json);
}
void writeJsonShorthand(benchmark::State& state) {
    writeText(state, jsonShorthand);
}
void writeXml(benchmark::State& state) {
    writeText(state, xml);
}
void writeXmlShorthand(benchmark::State& state) {
    writeText(state, xmlShorthand);
}

void readBinary(benchmark::State& state) {
    const QByteArray data =
        platform::writePropertyList(records(), platform::PropertyListFormat::Binary);
    for (auto _ : state)
        benchmark::DoNotOptimize(platform::readPropertyList(data));
    reportSize(state, data.size());
}

void writeBinary(benchmark::State& state) {
    qsizetype size = 0;
    for (auto _ : state) {
        const QByteArray data =
            platform::writePropertyList(records(), platform::PropertyListFormat::Binary);
        size = data.size();
    }
    reportSize(state, size);
}

void baselineParse(benchmark::State& state) {
    const std::string text = json()->toStdString();
    for (auto _ : state)
        benchmark::DoNotOptimize(nlohmann::json::parse(text));
    reportSize(state, static_cast<qsizetype>(text.size()));
}

void baselineDump(benchmark::State& state) {
    const auto value = nlohmann::json::parse(json()->toStdString());
    for (auto _ : state)
        benchmark::DoNotOptimize(value.dump(1, '\t'));
    reportSize(state, static_cast<qsizetype>(value.dump(1, '\t').size()));
}

BENCHMARK(baselineParse)->Unit(benchmark::kMillisecond);
BENCHMARK(readJson)->Unit(benchmark::kMillisecond);
BENCHMARK(readJsonShorthand)->Unit(benchmark::kMillisecond);
BENCHMARK(readXml)->Unit(benchmark::kMillisecond);
BENCHMARK(readXmlShorthand)->Unit(benchmark::kMillisecond);
BENCHMARK(readBinary)->Unit(benchmark::kMillisecond);
BENCHMARK(baselineDump)->Unit(benchmark::kMillisecond);
BENCHMARK(writeJson)->Unit(benchmark::kMillisecond);
BENCHMARK(writeJsonShorthand)->Unit(benchmark::kMillisecond);
BENCHMARK(writeXml)->Unit(benchmark::kMillisecond);
BENCHMARK(writeXmlShorthand)->Unit(benchmark::kMillisecond);
BENCHMARK(writeBinary)->Unit(benchmark::kMillisecond);

}  // namespace
