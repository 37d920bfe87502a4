#pragma once

#include <QString>
#include <optional>

#include "platform/base/error.h"

namespace engine {
class DQDownload;
}

namespace app {

/// What a sentence may tell beside the cause.
struct FailureCircumstances {
    qint64 received = 0;  ///< Bytes of the file.
    qint64 expected = 0;  ///< Below 1: its length is not known.
    QString volume;       ///< Where it was to be written.
    std::optional<qint64> freeBytes;
};

/// Why a download failed, in a short plain sentence in the user's language, and what to do where
/// that helps. Never a text of a library or one that names parts of the program: those are the
/// log's.
[[nodiscard]] QString failureSentence(const platform::Error& error,
                                      const FailureCircumstances& circumstances);

/// Of a download that failed for good with an HTTP status, in this run or an earlier one, as its
/// rows tell it. Empty: the status says no more than its number, or there was none.
[[nodiscard]] QString refusalSentence(const engine::DQDownload& download);

/// Of a download that was interrupted by an error. Empty: it was not. Looks at its disk.
[[nodiscard]] QString failureSentence(engine::DQDownload& download);

}  // namespace app
