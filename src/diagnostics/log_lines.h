#pragma once

#include <QByteArray>
#include <QString>
#include <functional>

#include "structured/json/flat_object.h"

namespace diagnostics {

/// False: enough.
using TakeLine = std::function<bool(const structured::FlatObject& line)>;

/// Hands on the entries in stretches of the store, skipping what is none: a line that a crash cut
/// short does not take the one behind it along. False: `take` had enough.
bool takeLines(QByteArrayView text, const TakeLine& take);

/// Hands on what the store in `folder` holds in the order of writing, from the moment `since` on,
/// which is written like the entries' timestamps.
void takeStoredLines(const QString& folder, const QByteArray& since, const TakeLine& take);

}  // namespace diagnostics
