#include <algorithm>
#include <array>
#include <cstdio>
#include <numeric>

#include "app/report/problem_report.h"
#include "http/content/http_data_compressor.h"

namespace app {

namespace {

constexpr qsizetype blockSize = 512;
using Header = std::array<char, blockSize>;

void put(Header& header, std::size_t at, const QByteArray& text) {
    std::copy(text.begin(), text.end(), header.begin() + static_cast<std::ptrdiff_t>(at));
}

QByteArray octal(qint64 number, int digits) {
    return QByteArray::number(number, 8).rightJustified(digits, '0');
}

/// The places of the fields are those of POSIX.1-1988 (ustar).
Header headerOf(const ReportFile& file, qint64 seconds) {
    Header header{};
    put(header, 0, "orlop-report/" + file.name.toLatin1());
    put(header, 100, "0000600");
    put(header, 108, "0000000");
    put(header, 116, "0000000");
    put(header, 124, octal(file.contents.size(), 11));
    put(header, 136, octal(seconds, 11));
    put(header, 148, "        ");
    put(header, 156, "0");
    put(header, 257, "ustar");
    put(header, 263, "00");
    const int sum = std::accumulate(header.begin(), header.end(), 0, [](int all, char byte) {
        return all + static_cast<unsigned char>(byte);
    });
    put(header, 148, octal(sum, 6) + '\0' + ' ');
    return header;
}

}  // namespace

QByteArray reportArchive(const std::vector<ReportFile>& files, qint64 secondsSince1970) {
    QByteArray tape;
    for (const ReportFile& file : files) {
        const Header header = headerOf(file, secondsSince1970);
        tape.append(header.data(), blockSize);
        tape += file.contents;
        tape.append((blockSize - tape.size() % blockSize) % blockSize, '\0');
    }
    tape.append(2 * blockSize, '\0');
    const http::CodedBytes coded = http::HTTPDataCompressor::compressData(tape);
    return coded.error ? QByteArray() : coded.data;
}

}  // namespace app
