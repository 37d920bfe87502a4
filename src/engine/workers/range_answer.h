#pragma once

#include "engine/record/known_file.h"
#include "engine/workers/download_worker_delegate.h"

namespace engine {

class DQDownloadWorkerPrototype;
class UserSettings;

/// From the head of an answer with the whole file.
void rememberFile(UserSettings& settings, const WorkerResponse& response, qint64 length);
/// From the head of an answer with a part, if the length is not known yet.
void rememberLengthFromPart(UserSettings& settings, const WorkerResponse& response);

/// How a server took the wish for a part of the file.
enum class RangeAnswer {
    Honoured,
    /// It sends the whole file.
    Refused,
    /// It sends nothing of the file now, which says nothing about the part that is on disk.
    Withheld,
    /// The file ends where what is on disk does, which nobody knew.
    NothingLeft,
    /// It sends a part, but not the one asked for, or one of another file; or it has a file of
    /// another length.
    Contradicted
};
[[nodiscard]] RangeAnswer judgeRangeAnswer(const DQDownloadWorkerPrototype& worker,
                                           const WorkerResponse& response, const KnownFile& known);

/// Whether a whole answer cannot be the file of which something is known, in whatever version: a
/// page in place of another type, or a length that differs where all validators are missing now,
/// as networks send that ask for a login first. `length`: as announced, below 1 if it was not.
[[nodiscard]] bool speaksAgainstFile(const WorkerResponse& response, qint64 length,
                                     const KnownFile& known);

/// Whether an answer that nobody asked to be a part is one all the same.
[[nodiscard]] bool isUnaskedPart(const WorkerResponse& response);

}  // namespace engine
