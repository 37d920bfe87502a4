// Inflating 64 MiB of log lines: in memory, from file to file and in pieces as they come from a
// server, and what "gzip -dc" takes for the same bytes, which it reads from a file and throws away.
#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>

#include "http/content/http_data_compressor.h"
#include "http/content/http_data_decompressor.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using http::HTTPDataDecompressor;

constexpr qsizetype plainSize = qsizetype{64} << 20;

/// In memory where the system has a folder for that, so that no disk is measured.
QString folderTemplate() {
    const QString memory = u"/dev/shm"_s;
    return (QFile::exists(memory) ? memory : QDir::tempPath()) + u"/orlop-bench-XXXXXX"_s;
}

struct Sample {
    QTemporaryDir folder{folderTemplate()};
    QByteArray packed;
    QString packedPath = folder.filePath(u"packed.gz"_s);
    QString plainPath = folder.filePath(u"plain"_s);

    Sample() {
        std::mt19937 random(1);
        QByteArray plain;
        while (plain.size() < plainSize)
            plain += "2024-02-29 12:" + QByteArray::number(random() % 60) + " GET /files/archive-" +
                     QByteArray::number(random() % 100000) + ".tar.gz 200 " +
                     QByteArray::number(random()) + '\n';
        plain.truncate(plainSize);
        packed = http::HTTPDataCompressor::compressData(plain).data;
        QFile file(packedPath);
        if (!file.open(QIODevice::WriteOnly) || file.write(packed) != packed.size())
            std::abort();
    }
};

Sample& sample() {
    static Sample instance;
    return instance;
}

void reportSize(benchmark::State& state) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * plainSize);
}

void baselineGzip(benchmark::State& state) {
    const std::string command =
        "gzip -dc " + QFile::encodeName(sample().packedPath).toStdString() + " > /dev/null";
    for (auto _ : state) {
        if (std::system(command.c_str()) != 0)
            state.SkipWithError("gzip has failed");
    }
    reportSize(state);
}

void inflateInMemory(benchmark::State& state) {
    for (auto _ : state) {
        if (HTTPDataDecompressor::uncompressData(sample().packed).data.size() != plainSize)
            state.SkipWithError("it came out shorter");
    }
    reportSize(state);
}

void inflateFile(benchmark::State& state) {
    for (auto _ : state) {
        if (HTTPDataDecompressor::uncompressDataFromFile(sample().packedPath, sample().plainPath))
            state.SkipWithError("it cannot be inflated");
    }
    reportSize(state);
}

void inflateInPieces(benchmark::State& state) {
    const QByteArray& packed = sample().packed;
    for (auto _ : state) {
        HTTPDataDecompressor decompressor;
        qsizetype size = 0;
        for (qsizetype at = 0; at < packed.size(); at += state.range(0))
            size += decompressor
                        .uncompressBytes(packed.constData() + at,
                                         std::min<qsizetype>(state.range(0), packed.size() - at))
                        .data.size();
        if (size != plainSize)
            state.SkipWithError("it came out shorter");
    }
    reportSize(state);
}

BENCHMARK(baselineGzip)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(inflateInMemory)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(inflateFile)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(inflateInPieces)->Arg(16384)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
