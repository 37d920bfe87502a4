#include "engine/record/download_record.h"

#include "engine/context.h"
#include "engine/record/past_failure.h"
#include "engine/record/rule_matching.h"
#include "links/names/file_names.h"
#include "links/paths/path_components.h"
#include "links/text/substrings.h"
#include "platform/base/log.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {

/// Fixes the date of its creation.
DownloadRecord::DownloadRecord(const Context& context, const platform::Url& url)
    : context_(context), dates_(context, settings_), identity_(context, url, settings_) {
    dates_.invalidateDate(true);
}

void DownloadRecord::userSettingsFromArchive(const QVariantMap& archive) {
    settings_.restore(archive);
    isRestored_ = true;
    const QVariant failure = archive.value(keys::failure);
    if (!failure.canConvert<QVariantMap>() || !archive.value(keys::paused).toBool())
        return;
    PastFailure past = PastFailure::fromArchive(failure.toMap());
    _isInterrupted = hasFailedBefore_ = true;
    wasGivenUp_ = past.isForGood;
    if (past.error)
        lastError_ = std::make_unique<platform::Error>(std::move(*past.error));
}

QString DownloadRecord::description() const {
    const QString shown =
        platform::isDebugLogEnabled() || isDebugLogged_ ? locationKey() : anonymizedName();
    return u"<DQDownload: %1 0x%2>"_s.arg(shown,
                                          QString::number(reinterpret_cast<quintptr>(this), 16));
}

bool DownloadRecord::isMatchForSearchStrings(const QStringList& strings, bool checkURL) const {
    return links::isMatchForSearchStrings(checkURL ? originalURLString() : name(), strings);
}

bool DownloadRecord::hostComponents(const QStringList& pattern,
                                    const QStringList& matchComponents) {
    return hostComponentsMatch(pattern, matchComponents);
}

bool DownloadRecord::hasHostFromArray(const QStringList& hosts) const {
    const auto original = platform::Url::parse(originalURLString());
    return isHostInPatterns(original ? original->host() : URL().host(), hosts);
}

bool DownloadRecord::hasExtensionFromArray(const QStringList& extensions) const {
    return hasExtensionInList(links::cleanFilename(name()), extensions);
}

bool DownloadRecord::matchesSpecialCase(const QVariantMap& rule) const {
    const QString hosts = u"Hosts"_s;
    const QString extensions = u"Extensions"_s;
    if (rule.contains(hosts) && !hasHostFromArray(rule.value(hosts).toStringList()))
        return false;
    if (rule.contains(extensions) && !hasExtensionFromArray(rule.value(extensions).toStringList()))
        return false;
    return rule.contains(hosts) || rule.contains(extensions);
}

QString DownloadRecord::findFile() {
    return identity_.findFile();
}

QString DownloadRecord::pathByCheckingExistence(bool check) {
    const QString found = findFile();
    return found.isEmpty() && !check ? path() : found;
}

}  // namespace engine
