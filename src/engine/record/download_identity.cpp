#include "engine/record/download_identity.h"

#include <QStringList>
#include <algorithm>
#include <utility>

#include "engine/context.h"
#include "engine/environment.h"
#include "engine/record/user_settings.h"
#include "engine/settings.h"
#include "links/names/anonymized_names.h"
#include "links/names/file_names.h"
#include "links/names/safe_file_name.h"
#include "links/names/sort_keys.h"
#include "links/paths/folders.h"
#include "links/paths/path_components.h"
#include "links/paths/path_rules.h"
#include "links/text/localization.h"
#include "platform/files/files.h"
#include "platform/text/ascii.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

/// For names without an extension, so that they get the icon of a plain file.
const QString pseudoExtension = u"com.tarnworks.imaginaryfiletype"_s;

QString hostForLimits(const QString& host) {
    constexpr qsizetype countedLabels = 2;
    const auto isNumeric = [](QChar unit) { return unit == u'.' || platform::isAsciiDigit(unit); };
    const QStringList labels = host.split(u'.');
    if (labels.size() <= countedLabels || std::all_of(host.cbegin(), host.cend(), isNumeric))
        return host;
    return labels.last(countedLabels).join(u'.');
}

/// A text that is nothing but the prefix keeps it.
QString withoutPrefix(const QString& text, QStringView prefix) {
    return text.size() > prefix.size() && text.startsWith(prefix) ? text.sliced(prefix.size())
                                                                  : text;
}

/// Marks a computed text as known even if it is empty.
QString known(const QString& text) {
    return text.isNull() ? u""_s : text;
}

}  // namespace

DownloadIdentity::DownloadIdentity(const Context& context, platform::Url url,
                                   UserSettings& settings)
    : context_(context), settings_(settings), _url(std::move(url)) {}

QString DownloadIdentity::originalURLString() const {
    const QString original = settings_.string(keys::originalURL);
    return original.isEmpty() ? _url.absoluteString() : original;
}

void DownloadIdentity::setURL(const platform::Url& url) {
    _url = url;
    isDownloadPage_.reset();
    _queueRelevantHost = QString();
    shown_.reset();
    settings_.noteChangeBeside();
}

void DownloadIdentity::invalidateIconAndNameCache() {
    if (!shown_)
        return;
    Shown unnamed;
    unnamed.locationKey = shown_->locationKey;
    *shown_ = unnamed;
}

DownloadIdentity::Shown& DownloadIdentity::shown() const {
    if (!shown_)
        shown_ = std::make_unique<Shown>();
    return *shown_;
}

bool DownloadIdentity::isDownloadPageURL() const {
    if (!isDownloadPage_) {
        const auto& reader = context_.environment.pageReader;
        isDownloadPage_ = reader && reader->isDownloadPageURL(_url);
    }
    return *isDownloadPage_;
}

const QString& DownloadIdentity::queueRelevantHost() const {
    if (_queueRelevantHost.isNull())
        _queueRelevantHost = known(hostForLimits(_url.host().toLower()));
    return _queueRelevantHost;
}

void DownloadIdentity::setName(const QString& name) {
    if (name.isEmpty()) {
        settings_.remove(keys::name);
    } else {
        const QString single =
            name.endsWith(u".zip.001.zip"_s) ? links::stringByDeletingPathExtension(name) : name;
        const QString given = links::filenameByRemovingURLParameters(single);
        const QString preserved = preservedName(given);
        settings_.set(keys::name, preserved.isEmpty() ? given : preserved);
    }
    invalidateIconAndNameCache();
}

/// The name that a page's rule gives in place of `name`. Empty: none does.
QString DownloadIdentity::preservedName(const QString& name) const {
    const auto& reader = context_.environment.pageReader;
    const auto pattern = reader ? reader->preservedNamePattern(_url) : std::nullopt;
    if (!pattern)
        return {};
    const QString preserved = links::filenameWithPreservedNamePattern(
        _url, *pattern, settings_.string(keys::downloadPageTitle),
        links::plusSignsInNames(context_.defaults));
    const QString extension = links::pathExtension(name);
    if (extension.isEmpty())
        return preserved;
    constexpr qsizetype longestReplacedExtension = 4;
    const qsizetype length = links::pathExtension(preserved).size();
    const QString base = length >= 1 && length <= longestReplacedExtension
                             ? links::stringByDeletingPathExtension(preserved)
                             : preserved;
    return links::stringByAppendingPathExtension(base, extension);
}

QString DownloadIdentity::name() const {
    if (QString& known = shown().name; !known.isNull())
        return known;
    QString result = settings_.string(keys::name);
    if (!result.isEmpty()) {
        if (const QString preserved = preservedName(result); !preserved.isEmpty())
            result = preserved;
    } else {
        result = links::lastPathComponent(path());
        if (result.isEmpty())
            result = links::filename(_url, links::plusSignsInNames(context_.defaults));
    }
    shown().name = known(links::nameWithoutMarks(result));
    return shown().name;
}

QString DownloadIdentity::displayName() const {
    if (context_.defaults.get(settings::privateDownloading))
        return anonymizedName();
    return context_.defaults.get(settings::displayLocationsAsNames) ? locationKey() : name();
}

QString DownloadIdentity::anonymizedName() const {
    QString& anonymized = shown().anonymizedName;
    if (anonymized.isNull()) {
        const QString hidden = links::anonymizedStringPreservingExtension(
            name(), context_.defaults.get(settings::privateDownloadingPreservesExtensions), true);
        anonymized = known(context_.defaults.get(settings::privateDownloadingAddsGenericPrefix)
                               ? links::filledFormat(links::localized("File \"%@\""), {hidden})
                               : hidden);
    }
    return anonymized;
}

QString DownloadIdentity::sortName() const {
    QString& sorted = shown().sortName;
    if (sorted.isNull())
        sorted = known(links::sortString(name()));
    return sorted;
}

QString DownloadIdentity::locationKey() const {
    QString& key = shown().locationKey;
    if (key.isNull()) {
        const QString location = platform::abbreviateWithTilde(path());
        // It is shown and logged, where neither a password nor a token belongs.
        const QString address = (_url.hasUserInfo() ? _url.forTransfer() : _url).absoluteString();
        key = known(location.isEmpty() ? withoutPrefix(withoutPrefix(address, u"http://"), u"www.")
                                       : location);
    }
    return key;
}

std::optional<QString> DownloadIdentity::icon() const {
    if (context_.defaults.get(settings::privateDownloading) &&
        !context_.defaults.get(settings::privateDownloadingPreservesExtensions))
        return std::nullopt;
    QString& icon = shown().icon;
    if (icon.isNull()) {
        const QString extension = links::pathExtension(links::cleanFilename(name()));
        icon = extension.isEmpty() ? pseudoExtension : extension;
    }
    return icon;
}

QString DownloadIdentity::path() const {
    return _url.isFile() ? _url.filePath() : QString();
}

QString DownloadIdentity::findFile() {
    const QString former = path();
    if (former.isEmpty() || platform::pathExists(former))
        return former;
    return settings_.contains(keys::alias) ? findMovedFile(former) : QString();
}

/// Where the bookmark leads now that nothing is at the former path.
QString DownloadIdentity::findMovedFile(const QString& formerPath) {
    const QString moved = platform::resolveFileBookmark(settings_.value(keys::alias).toByteArray());
    if (!moved.isEmpty() && !links::isEqualToPath(moved, formerPath) &&
        platform::pathExists(moved)) {
        setURL(platform::Url::fromFilePath(moved));
        return moved;
    }
    // A volume that is away may come back with it.
    if (platform::pathExists(platform::volumePath(formerPath)))
        settings_.remove(keys::alias);
    return {};
}

}  // namespace engine
