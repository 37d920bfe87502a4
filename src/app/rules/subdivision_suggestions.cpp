#include "app/rules/subdivision_suggestions.h"

#include <optional>

#include "links/format/dates.h"
#include "links/names/file_names.h"
#include "links/text/localization.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

SubdivisionSuggestion suggestion(const QDateTime& now, const QString& rawFormat,
                                 const std::optional<QString>& slashReplacement) {
    const QString format = links::cleanPathByReplacingDashesWithString(rawFormat, slashReplacement);
    const QString example = links::dateStringWithFormat(now, format);
    const qsizetype folders = example.split(u'/').size();
    return {folders < 2 ? example
                        : links::filledFormat(links::localized("%@ (%lu nested subfolders)"),
                                              {example, QString::number(folders)}),
            format};
}

}  // namespace

std::vector<SubdivisionSuggestion> subdivisionSuggestions(const QDateTime& now,
                                                          bool allowsNestedFolders) {
    const std::optional<QString> keepsSlashes;
    const std::optional<QString> replacement =
        allowsNestedFolders ? keepsSlashes : std::optional(u"-"_s);
    std::vector<SubdivisionSuggestion> suggestions{suggestion(now, u"yyyy-MM-dd"_s, keepsSlashes),
                                                   suggestion(now, u"yyyy/MM/dd"_s, keepsSlashes),
                                                   {}};
    for (const QString& skeleton : {u"yMd"_s, u"yMMMd"_s, u"yMMMMd"_s}) {
        suggestions.push_back(
            suggestion(now, links::dateFormatFromTemplate(skeleton), replacement));
    }
    return suggestions;
}

}  // namespace app
