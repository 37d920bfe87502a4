#include "app/details/download_facts.h"

#include <QLocale>

#include "app/checksums/checksum_texts.h"
#include "app/details/attempt_log.h"
#include "app/rows/running_figures.h"
#include "app/rows/status_text.h"
#include "engine/context.h"
#include "engine/lifecycle/download.h"
#include "engine/record/known_file.h"
#include "engine/settings.h"
#include "engine/transfer/speed_limit.h"
#include "links/format/byte_counts.h"
#include "links/text/localization.h"
#include "links/text/typography.h"
#include "platform/base/user_defaults.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace app {

namespace keys = engine::keys;
using links::filledFormat;
using links::localized;

namespace {

QString dateText(const QDateTime& date) {
    return date.isValid() ? QLocale().toString(date.toLocalTime(), QLocale::ShortFormat)
                          : QString();
}

/// For people and to the byte.
QString exactSizeText(qint64 bytes) {
    return bytes < 1 ? QString()
                     : filledFormat(localized("%@ (%@ bytes)"),
                                    {links::fileSizeText(bytes), QLocale().toString(bytes)});
}

/// Puts the facts together from top to bottom.
class Facts {
public:
    Facts(engine::DQDownload& download, const StatusTexts& texts, const AttemptLog& attempts)
        : download_(download),
          settings_(download.userSettings()),
          texts_(texts),
          attempts_(attempts),
          isPrivate_(download.context().defaults.get(engine::settings::privateDownloading)) {}

    std::vector<Fact> collect() {
        add(localized("Name"), download_.displayName());
        add(localized("State"), links::stringWithDashesForHyphens(
                                    texts_.statusDescriptionWithLiveDetails(download_, true)));
        if (isPrivate_)
            add(localized("Addresses"), localized("Hidden while downloading in private"));
        else
            addPlaces();
        addSizes();
        addDates();
        addChecksums();
        if (!isPrivate_)
            addServer();
        for (const Attempt& attempt : attempts_.attempts(download_))
            add(filledFormat(localized("At %@"), {dateText(attempt.when)}), attempt.what);
        return std::move(facts_);
    }

private:
    void add(const QString& label, const QString& value) {
        if (!value.isEmpty())
            facts_.push_back({label, value});
    }

    void addPlaces() {
        const QString address = download_.originalURLString();
        add(localized("Address"), address);
        if (const QString answered = settings_.string(keys::responseURL); answered != address)
            add(localized("Redirected to"), answered);
        const QString page = settings_.string(keys::page);
        add(localized("Found on"), page.isEmpty() ? settings_.string(keys::referer) : page);
        add(localized("File"), platform::abbreviateWithTilde(download_.path()));
        add(localized("Partial file"),
            platform::abbreviateWithTilde(download_.intermediateDownloadTargetPath()));
        if (download_.status() != engine::DQDownloadStatusDone) {
            const QString file = settings_.string(keys::downloadFile);
            add(localized("Goes to"),
                file.isEmpty() ? settings_.string(keys::downloadFolder) : file);
        }
    }

    void addSizes() {
        const engine::KnownFile known = engine::knownFile(settings_);
        add(localized("Size"), exactSizeText(known.length));
        if (download_.status() != engine::DQDownloadStatusDone)
            add(localized("Arrived"), exactSizeText(heldBytes(download_)));
        add(localized("Type"), known.mediaType);
        if (const qint64 limit = engine::speedLimitOf(download_); limit > 0)
            add(localized("Speed limit"),
                filledFormat(localized("%@/s"), {links::fileSizeText(limit)}));
    }

    void addDates() {
        add(localized("Added"), dateText(download_.date()));
        if (download_.status() == engine::DQDownloadStatusDone)
            add(localized("Completed"), dateText(download_.doneDate()));
        if (const auto& modified = download_.dates().lastModifiedOnServerDate())
            add(localized("Changed on the server"), dateText(*modified));
    }

    void addChecksums() {
        if (const auto expected = engine::expectedChecksum(settings_))
            add(localized("Expected checksum"), titled(*expected));
        if (const auto computed = engine::computedChecksum(settings_))
            add(localized("Checksum of the file"), titled(*computed));
    }

    static QString titled(const engine::Checksum& checksum) {
        return engine::algorithmTitle(checksum.algorithm) + u' ' + checksum.hex();
    }

    /// What a resumption is decided by.
    void addServer() {
        const engine::KnownFile known = engine::knownFile(settings_);
        add(localized("Entity tag"), known.entityTag);
        add(localized("Date of the version"), known.lastModified);
        add(localized("Coding"), known.contentEncoding);
        if (settings_.boolean(keys::rangesDisabled))
            add(localized("Ranges"), localized("The server sends the file only as a whole"));
        else if (settings_.contains(keys::responseURL) && !known.rangeValidator().isEmpty())
            add(localized("Ranges"), localized("Changes of the file are noticed"));
    }

    engine::DQDownload& download_;
    const engine::UserSettings& settings_;
    const StatusTexts& texts_;
    const AttemptLog& attempts_;
    const bool isPrivate_;
    std::vector<Fact> facts_;
};

}  // namespace

std::vector<Fact> downloadFacts(engine::DQDownload& download, const StatusTexts& texts,
                                const AttemptLog& attempts) {
    return Facts(download, texts, attempts).collect();
}

QString plainText(const std::vector<Fact>& facts) {
    QString text;
    for (const Fact& fact : facts)
        text += fact.label + u": "_s + fact.value + u'\n';
    return text;
}

}  // namespace app
