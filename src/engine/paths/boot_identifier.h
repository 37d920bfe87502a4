#pragma once

#include <QByteArray>

namespace engine {

/// Differs from one boot of the machine to the next (random(4)). What was written in this one is
/// there whether it was synced or not. Any thread.
[[nodiscard]] const QByteArray& bootIdentifier();

}  // namespace engine
