#pragma once

#include <QString>

#include "engine/workers/download_worker_delegate.h"

namespace engine {

class DQDownloadWorkerPrototype;
class UserSettings;

/// What servers said about the file that partial data belongs to. With it a resume can tell whether
/// it would go on with the same file.
struct KnownFile {
    qint64 length = 0;  ///< 0: not known.
    QString entityTag;
    QString lastModified;  ///< Only if it can tell two versions apart.

    /// For "If-Range": what proves that two answers are parts of the same bytes. Empty: nothing.
    [[nodiscard]] QString rangeValidator() const;

    friend bool operator==(const KnownFile&, const KnownFile&) = default;
};

[[nodiscard]] KnownFile knownFile(const UserSettings& settings);
/// From the head of an answer with the whole file.
void rememberFile(UserSettings& settings, const WorkerResponse& response, qint64 length);
/// From the head of an answer with a part, if the length is not known yet.
void rememberLengthFromPart(UserSettings& settings, const WorkerResponse& response);
void forgetFile(UserSettings& settings);

/// How a server took the wish for a part of the file.
enum class RangeAnswer {
    Honoured,
    /// It sends something else: the whole file or an error page.
    Refused,
    /// It sends a part, but not the one asked for, or one of another file.
    Contradicted
};
[[nodiscard]] RangeAnswer judgeRangeAnswer(const DQDownloadWorkerPrototype& worker,
                                           const WorkerResponse& response, const KnownFile& known);

/// Whether an answer that nobody asked to be a part is one all the same.
[[nodiscard]] bool isUnaskedPart(const WorkerResponse& response);

}  // namespace engine
