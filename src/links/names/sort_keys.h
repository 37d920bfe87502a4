#pragma once

#include <QString>
#include <QStringList>

namespace platform {
class UserDefaults;
}

namespace links {

/// The words that do not count at the start of a name: "Ignorable Sorting Prefixes" if it has a
/// value (an empty one too), else the user's wording of "a an the".
[[nodiscard]] QString sortPrefixesString(const platform::UserDefaults& defaults);

/// The words that `sortString` goes by, separated by blanks; "a an the" before they are told. Main
/// thread.
void setSortPrefixes(const QString& words);
/// These words in lower case with a blank behind each. Main thread.
[[nodiscard]] const QStringList& sortPrefixes();

/// A name without the first prefix that it begins with, regardless of case. To be compared by
/// `platform::compareStringsNaturally`. Main thread.
[[nodiscard]] QString sortString(const QString& name);

}  // namespace links
