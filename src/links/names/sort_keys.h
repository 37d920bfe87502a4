#pragma once

#include <QString>
#include <QStringList>

namespace links {

/// The words that do not count at the start of a name: "Ignorable Sorting Prefixes" if it has a
/// value (an empty one too), else the user's wording of "a an the".
[[nodiscard]] QString sortPrefixesString();
/// These words in lower case with a blank behind each. Kept from the first call on; `forcedRebuild`
/// reads the setting again. Main thread.
[[nodiscard]] const QStringList& sortPrefixesByForcedRebuild(bool forcedRebuild);

/// A name without the first prefix that it begins with, regardless of case. To be compared by
/// `platform::compareStringsNaturally`. Main thread.
[[nodiscard]] QString sortString(const QString& name);

}  // namespace links
