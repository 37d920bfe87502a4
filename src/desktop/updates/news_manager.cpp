#include "desktop/updates/news_manager.h"

#include "desktop/settings.h"
#include "links/text/localization.h"
#include "platform/base/user_defaults.h"

namespace desktop {

using namespace Qt::Literals::StringLiterals;
using links::localized;

namespace {

constexpr platform::Seconds askAgainAfter = 86400;
/// Later than that, a window that comes up by itself gets in the way.
constexpr platform::Seconds popUpTime = 3.0;
const QString contentKey = u"HTML Content"_s;
const QString addressKey = u"URL"_s;

QVariantMap stored(const News& news) {
    return {{contentKey, news.html}, {addressKey, news.address}};
}

}  // namespace

qint64 newsVersion(const QString& html) {
    const QString marker = u"DQ_NEWS_VERSION["_s;
    const qsizetype at = html.indexOf(marker);
    const qsizetype end = at < 0 ? -1 : html.indexOf(u']', at);
    return end < 0 ? 0 : html.mid(at + marker.size(), end - at - marker.size()).toLongLong();
}

DQNewsManager::DQNewsManager(const Surroundings& surroundings, QString address,
                             QString shortVersion)
    : surroundings_(surroundings),
      address_(std::move(address)),
      shortVersion_(std::move(shortVersion)),
      relaunch_(surroundings.loop),
      popUpEnd_(surroundings.loop) {}

void DQNewsManager::showWaitingNews() {
    const QVariantMap latest = surroundings_.defaults.get(settings::latestNews);
    const News news{latest.value(contentKey).toString(), latest.value(addressKey).toString()};
    if (!news.html.isEmpty() && webAddress(news.address)) {
        populateDeferred(news);
    }
}

void DQNewsManager::launchNews(bool automatically) {
    if (!address_.isEmpty()) {
        launchNewsWithURL(address_, automatically);
    }
}

QString DQNewsManager::addressWithVersion(const QString& address) const {
    if (!surroundings_.defaults.get(settings::newsReportVersion) || shortVersion_.isEmpty()) {
        return address;
    }
    // The next day asks at the same address, which has it already.
    if (address.contains(u"?version=")) {
        return address;
    }
    const bool isFolder = !address.endsWith(u'/') && !address.section(u'/', -1).contains(u'.');
    return u"%1%2?version=%3"_s.arg(address, isFolder ? u"/"_s : QString(), shortVersion_);
}

void DQNewsManager::launchNewsWithURL(const QString& address, bool automatically) {
    const QString full = addressWithVersion(address);
    relaunch_.start(askAgainAfter, [this, full] { launchNewsWithURL(full, true); });
    setAutomaticNewsPopUpDisabledAfterDelay(automatically);
    if (automatically && surroundings_.defaults.get(settings::suppressNews)) {
        return;
    }
    surroundings_.fetcher.fetch(
        full, [this, full, automatically](const std::optional<QByteArray>& page) {
            if (page) {
                const News news{QString::fromUtf8(*page), full};
                automatically ? didFetch(news) : showByHand(news);
            } else if (!automatically) {
                surroundings_.view.tell(localized("The page of news cannot be reached."));
            }
        });
}

void DQNewsManager::setAutomaticNewsPopUpDisabledAfterDelay(bool automatically) {
    popUpEnd_.cancel();
    if (automatically && !surroundings_.defaults.get(settings::newsPoppedUpOnce)) {
        popUpEnd_.start(popUpTime,
                        [this] { surroundings_.defaults.set(settings::newsPoppedUpOnce, true); });
    }
}

void DQNewsManager::didFetch(const News& news) {
    if (updateNewsVersionFromHTMLContent(news.html)) {
        surroundings_.defaults.set(settings::latestNews, stored(news));
        populateDeferred(news);
    }
}

bool DQNewsManager::updateNewsVersionFromHTMLContent(const QString& html) {
    const qint64 version = html.isEmpty() ? 0 : newsVersion(html);
    if (version < 0) {
        return true;
    }
    if (version <= surroundings_.defaults.get(settings::newsVersion)) {
        return false;
    }
    surroundings_.defaults.set(settings::newsVersion, version);
    return true;
}

void DQNewsManager::populateDeferred(const News& news) {
    news_ = news;
    if (isAlertShown_) {
        return;
    }
    if (surroundings_.defaults.get(settings::newsPoppedUpOnce)) {
        setAlertShown(true);
    } else if (!surroundings_.view.isVisible()) {
        surroundings_.view.showBehind(news);
        forgetLatest();
        surroundings_.defaults.set(settings::newsPoppedUpOnce, true);
    }
}

void DQNewsManager::showByHand(const News& news) {
    static_cast<void>(updateNewsVersionFromHTMLContent(news.html));
    news_ = news;
    setAlertShown(false);
    forgetLatest();
    surroundings_.view.show(news);
}

void DQNewsManager::showNewsFromStatusItem() {
    if (!isAlertShown_) {
        return;
    }
    setAlertShown(false);
    forgetLatest();
    if (news_.html.isEmpty()) {
        surroundings_.view.beep();
    } else {
        surroundings_.view.show(news_);
    }
}

void DQNewsManager::preserveNews() {
    if (surroundings_.view.isVisible()) {
        surroundings_.defaults.set(settings::latestNews, stored(news_));
        surroundings_.defaults.removeObject(settings::newsPoppedUpOnce.name());
    }
}

void DQNewsManager::setAlertShown(bool shown) {
    isAlertShown_ = shown;
    surroundings_.view.setAlertShown(shown);
}

void DQNewsManager::forgetLatest() {
    surroundings_.defaults.removeObject(settings::latestNews.name());
}

}  // namespace desktop
