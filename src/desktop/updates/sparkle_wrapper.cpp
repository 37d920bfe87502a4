#include "desktop/updates/sparkle_wrapper.h"

#include <QDateTime>
#include <QLocale>
#include <algorithm>

#include "desktop/settings.h"
#include "links/text/localization.h"
#include "platform/base/log.h"
#include "platform/base/user_defaults.h"

namespace desktop {

using namespace Qt::Literals::StringLiterals;
using links::filledFormat;
using links::localized;

namespace {

constexpr double checkInterval = 86400;
const QString name = u"Orlop"_s;
const QString currentVersionKey = u"Current Version"_s;
const QString updateVersionKey = u"Update Version"_s;
const QString checkDateKey = u"Check Date"_s;

DQSparkleWrapper* installed = nullptr;

}  // namespace

DQSparkleWrapper* sharedSparkleWrapper() {
    return installed;
}

void installSparkleWrapper(DQSparkleWrapper* wrapper) {
    installed = wrapper;
}

DQSparkleWrapper::DQSparkleWrapper(const Surroundings& surroundings, OnlineSources sources,
                                   QString currentShortVersion, QString packageManager)
    : surroundings_(surroundings),
      sources_(std::move(sources)),
      currentShortVersion_(std::move(currentShortVersion)),
      packageManager_(std::move(packageManager)),
      next_(surroundings.loop) {}

void DQSparkleWrapper::becomeSparkleDelegate() {
    next_.cancel();
    if (canCheck() && checksAutomatically()) {
        checkIfDue();
    }
}

void DQSparkleWrapper::checkIfDue() {
    const QVariantMap status = surroundings_.defaults.get(settings::updateStatus);
    const double since = surroundings_.loop.clock().wall() - status.value(checkDateKey).toDouble();
    // A clock that was set back must not put it off for years.
    const bool isDue = !status.contains(checkDateKey) || since >= checkInterval || since < 0;
    if (isDue) {
        checkForUpdates();
    }
    next_.start(isDue ? checkInterval : checkInterval - since, [this] { checkIfDue(); });
}

bool DQSparkleWrapper::checksAutomatically() const {
    return surroundings_.defaults.hasValueForKey(settings::automaticUpdateChecks.name())
               ? surroundings_.defaults.get(settings::automaticUpdateChecks)
               : packageManager_.isEmpty();
}

void DQSparkleWrapper::toggleAutomaticChecking() {
    surroundings_.defaults.set(settings::automaticUpdateChecks, !checksAutomatically());
    becomeSparkleDelegate();
    Q_EMIT changed();
}

void DQSparkleWrapper::checkForUpdates() {
    if (!canCheck() || isChecking_) {
        return;
    }
    isChecking_ = true;
    problem_.clear();
    surroundings_.fetcher.fetch(sources_.appcast, [this](const std::optional<QByteArray>& feed) {
        if (!feed) {
            fail(localized("The server that knows of updates cannot be reached."));
            return;
        }
        surroundings_.fetcher.fetch(
            sources_.appcast + u".sig"_s,
            [this, feed = *feed](const std::optional<QByteArray>& signature) {
                didFetchSignature(feed, signature);
            });
    });
    Q_EMIT changed();
}

void DQSparkleWrapper::didFetchSignature(const QByteArray& feed,
                                         const std::optional<QByteArray>& signature) {
    if (!signature || !isSignedBy(feed, *signature, sources_.appcastKey)) {
        fail(
            localized("What the server says of updates is not signed by Orlop's makers and is "
                      "not believed."));
        return;
    }
    didFinishLoadingAppcast(feed);
}

void DQSparkleWrapper::didFinishLoadingAppcast(const QByteArray& feed) {
    isChecking_ = false;
    const auto newest = newestItem(feed);
    const bool isUpdate = newest && isNewer(newest->version, currentShortVersion_);
    setUpdateVersion(isUpdate ? *newest : AppcastItem());
    if (isUpdate) {
        Q_EMIT updateFound(statusDescription());
    }
}

void DQSparkleWrapper::fail(const QString& problem) {
    isChecking_ = false;
    problem_ = problem;
    platform::log(u"updates: %1"_s.arg(problem), platform::LogLevel::Warning);
    Q_EMIT changed();
}

void DQSparkleWrapper::setUpdateVersion(const AppcastItem& found) {
    page_ = found.page;
    surroundings_.defaults.set(
        settings::updateStatus,
        {{currentVersionKey, currentShortVersion_},
         {updateVersionKey, found.version},
         {checkDateKey, static_cast<qint64>(surroundings_.loop.clock().wall())}});
    Q_EMIT changed();
}

QString DQSparkleWrapper::statusDescription() const {
    const QVariantMap status = surroundings_.defaults.get(settings::updateStatus);
    if (status.value(currentVersionKey).toString() != currentShortVersion_ ||
        !status.contains(updateVersionKey)) {
        return {};
    }
    const QString update = status.value(updateVersionKey).toString();
    return update.isEmpty()
               ? filledFormat(localized("%@ %@ is up to date."), {name, currentShortVersion_})
               : filledFormat(localized("%@ %@ is now available! You are currently using %@ %@."),
                              {name, update, name, currentShortVersion_});
}

QString DQSparkleWrapper::statusDateDescription() const {
    const QVariantMap status = surroundings_.defaults.get(settings::updateStatus);
    if (!status.contains(checkDateKey)) {
        return {};
    }
    const QDateTime date = QDateTime::fromSecsSinceEpoch(status.value(checkDateKey).toLongLong());
    const QLocale locale;
    return filledFormat(localized("Last check: %@"),
                        {locale.toString(date.date(), QLocale::LongFormat) + u' ' +
                         locale.toString(date.time(), QLocale::ShortFormat)});
}

std::optional<platform::Url> DQSparkleWrapper::page() const {
    // Understood by the desktops' software centres.
    if (!packageManager_.isEmpty())
        return platform::Url::parse(u"appstream:com.tarnworks.Orlop"_s);
    const auto own = webAddress(page_);
    return own ? own : webAddress(sources_.productPage);
}

}  // namespace desktop
