#pragma once

#include <QDateTime>
#include <QString>
#include <vector>

namespace app {

/// A date format for subfolders that a text field suggests.
struct SubdivisionSuggestion {
    /// What today would be called. Empty with an empty format: a separator.
    QString title;
    QString format;
};

/// Formats that sort well and, behind a separator, those of the user's locale; in the latter
/// slashes become dashes unless `allowsNestedFolders`.
[[nodiscard]] std::vector<SubdivisionSuggestion> subdivisionSuggestions(const QDateTime& now,
                                                                        bool allowsNestedFolders);

}  // namespace app
