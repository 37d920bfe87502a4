#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <optional>

#include "platform/base/error.h"

namespace http {

/// Bytes, or why there are none.
struct CodedBytes {
    QByteArray data;
    std::optional<platform::Error> error;
};

/// What codes a file: one chunk after the other, then the end.
struct FileCoder {
    QString name;  ///< As error texts begin: "Compression".
    std::function<CodedBytes(const char* bytes, qsizetype length, bool isLast)> code;
    std::function<std::optional<platform::Error>()> close;
};

/// Passes a file through a coder into another, a quarter of a megabyte at a time. Nothing: done;
/// errors have code 11.
[[nodiscard]] std::optional<platform::Error> codeFile(const QString& source, const QString& target,
                                                      const FileCoder& coder);

}  // namespace http
