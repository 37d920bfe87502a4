#pragma once

#include <QStringList>
#include <QStringView>

namespace links {

/// The addresses of http and https in ordinary text, in order: each reaches up to a blank, an
/// angle bracket, a quotation mark or a closing bracket that was not opened inside it, without the
/// punctuation and the invisible marks behind it. In a row of a table or behind a command it ends
/// where the cell or the command does. They are not repaired, save for what hides them from being
/// links ("[.]" for a dot). Any thread.
[[nodiscard]] QStringList addressRuns(QStringView text);
/// How long the one is that begins `text`, as it stands there; 0: none does.
[[nodiscard]] qsizetype lengthOfLeadingRun(QStringView text);

/// Whether it is none, whatever it looks like. A series may take as much to write down.
[[nodiscard]] bool isTooLongForAddress(QStringView text);

/// With the dots and colons that somebody put into brackets so that there be no link.
[[nodiscard]] QString withoutDisarming(const QString& address);

}  // namespace links
