#pragma once

#include <QSet>
#include <QStringList>
#include <optional>
#include <vector>

#include "app/front_end.h"
#include "platform/net/url.h"

namespace app {

/// Finds the files at paths that the user dropped or chose, those in folders included.
class FileCollector {
public:
    /// Without `acceptsBundles` .orlop folders are passed over.
    FileCollector(Questions& questions, bool acceptsBundles);

    /// Adds the files of `paths`, in natural order, as file URLs. From the hundredth on each file
    /// more is asked about. False: the user had enough; what was found until then stays. Where
    /// nobody can be asked it does not: then none are taken, see `hasTooMany`.
    bool getFileURLs(const QStringList& paths, const std::optional<QString>& basePath = {});

    [[nodiscard]] const std::vector<platform::Url>& urls() const { return urls_; }
    /// Those of the given paths at which nothing to open was found.
    [[nodiscard]] const QStringList& fruitlessPaths() const { return fruitlessPaths_; }
    /// There were more files than may be taken without asking, and nobody to ask.
    [[nodiscard]] bool hasTooMany() const { return hasTooMany_; }

private:
    bool addItem(const QString& item, const std::optional<QString>& basePath);
    bool addFile(const QString& path);

    Questions& questions_;
    bool acceptsBundles_;
    QSet<QString> walkedFolders_;
    std::vector<platform::Url> urls_;
    QStringList fruitlessPaths_;
    bool hasTooMany_ = false;
};

/// That there were, and what became of them.
[[nodiscard]] QString tooManyFilesText();

}  // namespace app
