#include "http/content/coded_bytes.h"

#include <QFile>
#include <array>

#include "http/http_request_error.h"

namespace http {

using namespace Qt::Literals::StringLiterals;
using platform::Error;

namespace {

constexpr qsizetype chunkSize = 262144;

std::optional<Error> failure(const QString& text) {
    return makeRequestError(HTTPRequestErrorCode::Compression, text);
}

std::optional<Error> failure(const QString& text, const QFile& file) {
    return makeRequestError(
        HTTPRequestErrorCode::Compression, text,
        Error{u"QFileDevice"_s, static_cast<int>(file.error()), file.errorString(), nullptr});
}

std::optional<Error> codeChunks(QFile& from, QFile& to, const FileCoder& coder) {
    std::array<char, chunkSize> chunk{};
    while (true) {
        const qint64 count = from.read(chunk.data(), chunkSize);
        if (count < 0)
            return failure(
                u"%1 of %2 failed because we were unable to read from the source data "
                "file"_s.arg(coder.name, from.fileName()),
                from);
        if (count == 0)
            return std::nullopt;
        const CodedBytes coded = coder.code(chunk.data(), count, count < chunkSize);
        if (coded.error)
            return coded.error;
        if (to.write(coded.data) != coded.data.size())
            return failure(
                u"%1 of %2 failed because we were unable to write to the destination "
                "data file at %3"_s.arg(coder.name, from.fileName(), to.fileName()),
                to);
    }
}

}  // namespace

std::optional<Error> codeFile(const QString& source, const QString& target,
                              const FileCoder& coder) {
    QFile to(target);
    if (!to.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        return failure(u"%1 of %2 failed because we were to create a file at %3"_s.arg(
            coder.name, source, target));
    QFile from(source);
    if (!from.exists())
        return failure(u"%1 of %2 failed the file does not exist"_s.arg(coder.name, source));
    if (!from.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return failure(
            u"%1 of %2 failed because we were unable to read from the source data "
            "file"_s.arg(coder.name, source),
            from);
    if (const auto error = codeChunks(from, to, coder)) {
        coder.close();
        return error;
    }
    return coder.close();
}

}  // namespace http
