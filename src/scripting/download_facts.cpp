#include "scripting/download_facts.h"

#include "app/failures/failure_sentence.h"
#include "engine/record/known_file.h"
#include "engine/record/user_settings.h"
#include "platform/base/run_loop.h"

namespace scripting {

namespace keys = engine::keys;
using namespace Qt::Literals::StringLiterals;

namespace {

QString statusOf(const engine::DQDownload& download) {
    switch (download.status()) {
        case engine::DQDownloadStatusPaused:
            return download.isInterrupted() ? u"failed"_s : u"paused"_s;
        case engine::DQDownloadStatusQueued:
            return u"queued"_s;
        case engine::DQDownloadStatusDownloading:
            return u"downloading"_s;
        case engine::DQDownloadStatusDone:
            return u"done"_s;
        case engine::DQDownloadStatusAborted:
            break;
    }
    return u"failed"_s;
}

void addFigures(QVariantMap& facts, const engine::DQDownload& download, platform::Seconds now) {
    const engine::OverallFigures figures = download.figures();
    const qint64 known = engine::knownFile(download.userSettings()).length;
    const bool isRunning = download.status() == engine::DQDownloadStatusDownloading;
    const qint64 size = known > 0 ? known : figures.isLengthKnown ? figures.expected : 0;
    const bool isDone = download.status() == engine::DQDownloadStatusDone;
    const qint64 bytes = isRunning ? figures.total()
                         : isDone  ? size
                                   : download.userSettings().value(keys::keptBytes).toLongLong();
    facts[u"bytes"_s] = bytes;
    if (size > 0) {
        facts[u"size"_s] = size;
    }
    facts[u"fraction"_s] = isDone     ? 1.0
                           : size > 0 ? static_cast<double>(bytes) / static_cast<double>(size)
                                      : 0.0;
    if (isRunning) {
        const auto span = download.speed(now);
        facts[u"rate"_s] = span && span->seconds > 0 ? span->bytes / span->seconds : 0.0;
    }
}

}  // namespace

QString identityOf(const engine::DQDownload& download) {
    return download.userSettings().string(keys::identity);
}

QVariantMap factsOf(app::DQMainController& controller, engine::DQDownload& download) {
    QVariantMap facts{{u"identity"_s, identityOf(download)},
                      {u"address"_s, download.originalURLString()},
                      {u"name"_s, download.name()},
                      {u"status"_s, statusOf(download)},
                      {u"date"_s, download.date().toSecsSinceEpoch()}};
    addFigures(facts, download, controller.surroundings().loop.clock().monotonic());
    const QString path = download.status() == engine::DQDownloadStatusDone
                             ? download.path()
                             : download.intermediateDownloadTargetPath();
    if (!path.isEmpty()) {
        facts[u"path"_s] = path;
    }
    if (const auto computed = engine::computedChecksum(download.userSettings())) {
        facts[u"checksum"_s] = computed->text();
    }
    if (const auto expected = engine::expectedChecksum(download.userSettings())) {
        facts[u"expectedChecksum"_s] = expected->text();
    }
    if (facts[u"status"_s] == u"failed"_s) {
        facts[u"error"_s] = app::failureSentence(download);
    }
    return facts;
}

QVariantMap differences(const QVariantMap& before, const QVariantMap& now) {
    QVariantMap changed;
    for (auto fact = now.cbegin(); fact != now.cend(); ++fact) {
        if (before.value(fact.key()) != *fact) {
            changed[fact.key()] = *fact;
        }
    }
    for (auto fact = before.cbegin(); fact != before.cend(); ++fact) {
        if (!now.contains(fact.key())) {
            changed[fact.key()] = QString();
        }
    }
    return changed;
}

}  // namespace scripting
