#include "app/history/history_entry.h"

#include "engine/lifecycle/download.h"
#include "engine/record/user_settings.h"
#include "links/paths/folders.h"
#include "platform/base/user_defaults.h"
#include "platform/files/files.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto nameKey = u"Name"_s, urlKey = u"Original URL"_s, pathKey = u"Path"_s;
const auto aliasKey = u"Alias"_s, dateKey = u"Date"_s;
const auto checksumKey = u"Checksum"_s, verifiedKey = u"Checksum Verified"_s;
const auto wrongKey = u"Checksum Wrong"_s;

/// Takes a value of the type wanted out of `dictionary`; one of another type stays there.
template <typename Value>
Value taken(QVariantMap& dictionary, const QString& key) {
    const auto found = dictionary.constFind(key);
    if (found == dictionary.cend() || found->userType() != qMetaTypeId<Value>()) {
        return {};
    }
    return dictionary.take(key).template value<Value>();
}

QString nullIfEmpty(const QString& text) {
    return text.isEmpty() ? QString() : text;
}

}  // namespace

std::optional<QString> HistoryEntry::existingPath() const {
    return links::existingPathWithFallBackAliasData(path, alias);
}

HistoryEntry historyEntry(engine::DQDownload& download, bool byDateCompleted) {
    HistoryEntry entry;
    entry.name = nullIfEmpty(download.name());
    entry.originalURL = nullIfEmpty(download.originalURLString());
    entry.path = nullIfEmpty(platform::abbreviateWithTilde(download.path()));
    entry.alias = download.userSettings().value(engine::keys::alias).toByteArray();
    entry.date = byDateCompleted ? download.doneDate() : download.date();
    noteChecksum(entry, download);
    return entry;
}

void noteChecksum(HistoryEntry& entry, const engine::DQDownload& download) {
    const auto computed = engine::computedChecksum(download.userSettings());
    entry.checksum = computed ? computed->text() : QString();
    entry.isVerified =
        engine::checksumResult(download.userSettings()) == engine::ChecksumResult::Verified;
    entry.isWrongFile = download.isWrongFile();
}

HistoryEntry historyEntryFromDictionary(const QVariantMap& dictionary) {
    HistoryEntry entry;
    entry.others = dictionary;
    entry.name = taken<QString>(entry.others, nameKey);
    entry.originalURL = taken<QString>(entry.others, urlKey);
    entry.path = taken<QString>(entry.others, pathKey);
    entry.alias = taken<QByteArray>(entry.others, aliasKey);
    entry.checksum = taken<QString>(entry.others, checksumKey);
    entry.isVerified = taken<bool>(entry.others, verifiedKey);
    entry.isWrongFile = taken<bool>(entry.others, wrongKey);
    const QVariant date =
        platform::valueFromArchivedData(entry.others.value(dateKey).toByteArray());
    if (date.userType() == QMetaType::QDateTime) {
        entry.date = date.toDateTime();
        entry.others.remove(dateKey);
    }
    return entry;
}

QVariantMap historyDictionary(const HistoryEntry& entry) {
    QVariantMap dictionary = entry.others;
    const auto insert = [&](const QString& key, const QString& value) {
        if (!value.isNull()) {
            dictionary.insert(key, value);
        }
    };
    insert(nameKey, entry.name);
    insert(urlKey, entry.originalURL);
    insert(pathKey, entry.path);
    insert(checksumKey, nullIfEmpty(entry.checksum));
    for (const auto& [key, is] :
         {std::pair(verifiedKey, entry.isVerified), std::pair(wrongKey, entry.isWrongFile)}) {
        if (is) {
            dictionary.insert(key, true);
        }
    }
    if (!entry.alias.isEmpty()) {
        dictionary.insert(aliasKey, entry.alias);
    }
    if (entry.date.isValid()) {
        dictionary.insert(dateKey, platform::archivedData(entry.date));
    }
    return dictionary;
}

}  // namespace app
