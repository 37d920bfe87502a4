#include "app/intake/file_collector.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>

#include "links/paths/folders.h"
#include "links/paths/path_components.h"
#include "links/paths/path_rules.h"
#include "links/text/localization.h"
#include "platform/text/comparison.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::size_t numberOfFilesWithoutQuestion = 100;

Alert manyFilesAlert() {
    return {Alert::Kind::ManyFiles, u"100 files and counting..."_s,
            u"Are you sure you still want more?"_s, u"Continue"_s, u"Stop"_s};
}

bool isBundleName(const QString& name) {
    return links::pathExtension(name).compare(u"orlop"_s, Qt::CaseInsensitive) == 0;
}

}  // namespace

QString tooManyFilesText() {
    return links::localized(
        "There are more than 100 files in what was given, and nobody to ask whether they are all "
        "meant; none was taken.");
}

FileCollector::FileCollector(Questions& questions, bool acceptsBundles)
    : questions_(questions), acceptsBundles_(acceptsBundles) {}

bool FileCollector::getFileURLs(const QStringList& paths, const std::optional<QString>& basePath) {
    QStringList sorted = paths;
    std::sort(sorted.begin(), sorted.end(), [](const QString& a, const QString& b) {
        return platform::compareStringsNaturally(a, b) < 0;
    });
    return std::all_of(sorted.begin(), sorted.end(), [&](const QString& item) {
        const std::size_t before = urls_.size();
        const bool goesOn = addItem(item, basePath);
        if (goesOn && !basePath && urls_.size() == before) {
            fruitlessPaths_.append(item);
        }
        return goesOn;
    });
}

bool FileCollector::addItem(const QString& item, const std::optional<QString>& basePath) {
    if (isBundleName(item) && !acceptsBundles_) {
        return true;
    }
    const std::optional<QString> path = links::itemPathWithBasePath(item, basePath);
    if (!path) {
        return true;
    }
    if (isBundleName(item) || !links::isFolderPath(*path)) {
        return addFile(*path);
    }
    // A link can lead back to a folder above it.
    const QString canonicalPath = QFileInfo(*path).canonicalFilePath();
    if (walkedFolders_.contains(canonicalPath)) {
        return true;
    }
    walkedFolders_.insert(canonicalPath);
    const QDir::Filters everything = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
    return getFileURLs(QDir(*path).entryList(everything, QDir::NoSort), path);
}

bool FileCollector::addFile(const QString& path) {
    if (urls_.size() >= numberOfFilesWithoutQuestion && !questions_.confirm(manyFilesAlert())) {
        if (!questions_.canAsk()) {
            urls_.clear();
            hasTooMany_ = true;
        }
        return false;
    }
    urls_.push_back(platform::Url::fromFilePath(path));
    return true;
}

}  // namespace app
