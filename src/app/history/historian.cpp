#include "app/history/historian.h"

#include <algorithm>
#include <utility>

#include "app/settings.h"
#include "engine/lifecycle/download.h"
#include "engine/settings.h"
#include "links/paths/path_components.h"
#include "platform/files/files.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr platform::Seconds saveDelay = 5;

DQHistorian* installedHistorian = nullptr;

}  // namespace

DQHistorian::DQHistorian(QString supportFolder, platform::UserDefaults& defaults,
                         platform::Disks& disks, platform::RunLoop& loop)
    : supportFolder_(std::move(supportFolder)),
      defaults_(defaults),
      file_(historyArchivePath(), disks, loop),
      isOfCompleteDownloads_(defaults.get(settings::historyOfCompleteDownloads)),
      limit_(defaults.get(settings::numberOfHistoryItems)),
      saving_(loop) {
    observation_ = defaults_.observe([this](const QString&) { settingsDidChange(); });
}

DQHistorian::~DQHistorian() {
    if (_wantsToBeSaved) {
        save();
    }
}

QString DQHistorian::historyArchivePath() const {
    return links::stringByAppendingPathComponent(supportFolder_, u"History.plist"_s);
}

const QList<HistoryEntry>& DQHistorian::history() {
    if (!isLoaded_) {
        isLoaded_ = true;
        _history = file_.read();
    }
    return _history;
}

void DQHistorian::add(engine::DQDownload& download) {
    if (defaults_.get(engine::settings::privateDownloading) ||
        (download.status() != engine::DQDownloadStatusDone &&
         defaults_.get(settings::historyOfCompleteDownloads))) {
        return;
    }
    static_cast<void>(history());
    _history.append(historyEntry(download, defaults_.get(settings::historyByDateCompleted)));
    _wantsToBeSaved = true;
    checkNumberOfItems(true, false);
    Q_EMIT historyChanged();
}

void DQHistorian::noteVerification(engine::DQDownload& download) {
    static_cast<void>(history());
    const QString path = platform::abbreviateWithTilde(download.path());
    const auto found = std::find_if(_history.rbegin(), _history.rend(),
                                    [&](const HistoryEntry& entry) { return entry.path == path; });
    if (found == _history.rend()) {
        return;
    }
    noteChecksum(*found, download);
    _wantsToBeSaved = true;
    checkNumberOfItems(false, false);
    Q_EMIT historyChanged();
}

void DQHistorian::checkNumberOfItems(bool checkNumber, bool checkCompletion) {
    const qsizetype before = numberOfItems();
    if (checkCompletion) {
        _history.removeIf([](const HistoryEntry& entry) { return entry.alias.isEmpty(); });
    }
    const qint64 limit = defaults_.get(settings::numberOfHistoryItems);
    if (checkNumber && limit >= 0 && _history.size() > limit) {
        _history.remove(0, _history.size() - limit);
    }
    if (_history.size() != before) {
        didRemoveItems();
    }
    if (_wantsToBeSaved) {
        saving_.start(saveDelay, [this] { save(); });
    }
}

void DQHistorian::didRemoveItems() {
    _wantsToBeSaved = true;
    Q_EMIT itemsRemoved();
    Q_EMIT historyChanged();
}

/// Also told of a key whose value is the same as before, and then the file need not be read.
void DQHistorian::settingsDidChange() {
    const bool isOfCompleteDownloads = defaults_.get(settings::historyOfCompleteDownloads);
    const qint64 limit = defaults_.get(settings::numberOfHistoryItems);
    if (isOfCompleteDownloads != std::exchange(isOfCompleteDownloads_, isOfCompleteDownloads)) {
        checkNumberOfItems(false, isOfCompleteDownloads);
    }
    if (limit != std::exchange(limit_, limit)) {
        checkNumberOfItems(true, false);
    }
}

void DQHistorian::save() {
    saving_.cancel();
    _wantsToBeSaved = false;
    file_.write(history());
}

QList<HistoryEntry> DQHistorian::clear() {
    const QList<HistoryEntry> cleared = std::exchange(_history, {});
    isLoaded_ = true;
    save();
    Q_EMIT itemsRemoved();
    Q_EMIT historyChanged();
    return cleared;
}

void DQHistorian::putBack(const QList<HistoryEntry>& entries) {
    _history = entries + history();
    checkNumberOfItems(true, defaults_.get(settings::historyOfCompleteDownloads));
    save();
    Q_EMIT historyChanged();
}

void DQHistorian::cleanUp() {
    if (defaults_.get(settings::clearHistoryOnQuit)) {
        clear();
    } else if (_wantsToBeSaved) {
        save();
    }
    file_.finish();
}

DQHistorian& historian() {
    return *installedHistorian;
}

void installHistorian(DQHistorian* historian) {
    installedHistorian = historian;
}

}  // namespace app
