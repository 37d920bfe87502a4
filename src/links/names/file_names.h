#pragma once

#include <QString>
#include <optional>

#include "links/repair/percent_escapes.h"

namespace platform {
class Url;
}

namespace links {

/// The name that a download from `url` gets, never empty.
///
/// `pattern` is a page rule's expression: it is matched against the address, or if it begins with
/// "title:" against `downloadPageTitle` (which may be empty: then against the address after all),
/// and what its groups capture is the name. Where that gives nothing the name is the last component
/// of the address's path, else its host, else "-". May hold what no file name can: see
/// `safeFileName`.
[[nodiscard]] QString filenameWithPreservedNamePattern(
    const platform::Url& url, const QString& pattern, const QString& downloadPageTitle,
    PlusSigns plusSigns = PlusSigns::StandForBlanks);
[[nodiscard]] QString filename(const platform::Url& url,
                               PlusSigns plusSigns = PlusSigns::StandForBlanks);

/// Cut at the first question mark if an extension stands before it.
[[nodiscard]] QString filenameByRemovingURLParameters(const QString& name);

/// Without line breaks, with blanks for tabs, and with "_" for colons, asterisks and a dot at
/// either end. With a `replacement` for slashes the result is one name; without one `path` is a
/// relative path, which keeps its slashes but those at the ends and repeated ones. May be empty.
[[nodiscard]] QString cleanPathByReplacingDashesWithString(
    const QString& path, const std::optional<QString>& replacement);
/// The same for one name, with "|" for slashes.
[[nodiscard]] QString cleanFilename(const QString& name);

/// A name that desktops and this program leave behind in folders: it begins with a dot, is
/// "_ds_store", or ends in ".orlopinfo" or a carriage return.
[[nodiscard]] bool isNegligibleFilename(const QString& name);

}  // namespace links
