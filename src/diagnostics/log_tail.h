#pragma once

#include <QString>

#include "diagnostics/log_lines.h"
#include "platform/base/log_store.h"
#include "platform/files/descriptor.h"

namespace diagnostics {

/// Follows a store from its end of now on. One thread.
class LogTail {
public:
    explicit LogTail(const QString& folder);

    /// Hands on what was written since the last call.
    void takeNew(const TakeLine& take);
    /// Waits until something is written, or until nobody can read `output` any more: then false.
    [[nodiscard]] bool wait(int output);

private:
    void open(const platform::LogSegment& segment);
    void takeRest(const TakeLine& take);

    const QString folder_;
    platform::Descriptor changes_;  ///< Of the folder's files.
    platform::Descriptor file_;
    qint64 number_ = 0;
    qint64 offset_ = 0;
    QByteArray begun_;  ///< A line that is not at its end yet.
};

}  // namespace diagnostics
