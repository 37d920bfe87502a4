#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <cstdint>
#include <memory>
#include <optional>

#include "platform/base/error.h"

namespace http {

struct RequestState;

/// Takes the size of the temporary file that is to be gone on with into `partialDownloadSize`.
[[nodiscard]] std::optional<platform::Error> updatePartialDownloadSize(RequestState& state);
/// The value of a "Range" header for all bytes from `start` on.
[[nodiscard]] QString rangeFrom(std::uint64_t start);

/// Writes a response to a temporary file and puts it in its place when it is whole: as it came,
/// and inflated beside that when it is inflated on the way.
///
/// Under the request's lock.
class FileOutput {
public:
    explicit FileOutput(RequestState& state) : state_(state) {}

    /// Where a response goes on after what the file holds, or starts over; decided once a send.
    struct Start {
        std::optional<platform::Error> error;
        /// Bytes of the file that are void, because the server did not heed the range.
        std::uint64_t discarded = 0;
    };
    [[nodiscard]] Start begin();
    [[nodiscard]] std::optional<platform::Error> write(const QByteArray& received);
    [[nodiscard]] std::optional<platform::Error> writeInflated(const QByteArray& inflated);
    void close();

    /// Moves the whole file to its destination, inflating it if that has waited. Nothing: done, or
    /// nothing has been written.
    [[nodiscard]] std::optional<platform::Error> finish();
    /// Closes a download that has come to no good end and deletes what nobody can go on with.
    void abandon();

private:
    using File = std::unique_ptr<QFile>;

    [[nodiscard]] std::optional<platform::Error> open(File& file, QString& path);
    [[nodiscard]] static std::optional<platform::Error> writeAll(QFile& file,
                                                                 const QByteArray& data);
    [[nodiscard]] std::optional<platform::Error> moveToDestination(const QString& path) const;
    [[nodiscard]] std::optional<platform::Error> inflateToDestination() const;

    RequestState& state_;
    bool appends_ = false;
    File fileDownloadOutputStream_;
    File inflatedFileDownloadOutputStream_;
};

}  // namespace http
