#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace browser {

/// The name under which browsers know the host.
inline const QString hostName = QStringLiteral("com.tarnworks.orlop");

/// The extension's id in Chromium and its relatives, which follows from the key in its manifest.
inline const QString chromiumExtension = QStringLiteral("cllkkaiadkhffhkbagegjfpekdofdkjn");
/// The extension's id in Firefox and its relatives.
inline const QString firefoxExtension = QStringLiteral("orlop@tarnworks.com");

/// Whether a browser calls, as it tells in the arguments (without the program's name): Chromium an
/// origin, Firefox the path of the host's manifest and an extension's id. Nothing: nobody who does
/// so; false: an extension that is not ours.
[[nodiscard]] std::optional<bool> isOurExtension(const QStringList& arguments);

}  // namespace browser
