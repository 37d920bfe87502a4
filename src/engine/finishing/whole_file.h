#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

#include "engine/finishing/finished_file.h"
#include "platform/base/error.h"

namespace engine {

/// Makes a new file of `body` at `target`, synced and with its origin, in one step: it is there
/// whole or not at all, however this is cut short, and never replaces another. Nothing: done. Many
/// file systems of networks and sticks know no files without a name (open(2), O_TMPFILE), and
/// answer with an error. Any thread.
[[nodiscard]] std::optional<platform::Error> placeWholeFile(const QByteArray& body,
                                                            const QString& target,
                                                            const FileOrigin& origin);

}  // namespace engine
