#include "app/status/user_notification_manager.h"

#include "app/settings.h"
#include "links/text/localization.h"
#include "platform/base/user_defaults.h"
#include "platform/session/notifications.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto identifierPrefix = u"com.tarnworks.Orlop"_s;

/// Nobody reads more in a notification, and unclicked ones would gather without end.
constexpr qsizetype mostTexts = 100;
/// Of a kind; those after them share one that names the newest, or else they would bury the screen.
constexpr int mostAlone = 3;

QString category(const QString& identifier) {
    return identifier == u"Download Complete" ? u"transfer.complete"_s
           : identifier == u"Download Failed" ? u"transfer.error"_s
                                              : u"transfer"_s;
}

}  // namespace

DQUserNotificationManager::DQUserNotificationManager(const platform::UserDefaults& defaults,
                                                     platform::UserNotificationCenter* center,
                                                     std::function<void()> activated)
    : defaults_(defaults), center_(center), activated_(std::move(activated)) {
    if (center_ != nullptr) {
        center_->setActivationHandler(
            [this](const QString& identifier) { didActivateNotification(identifier); });
    }
}

DQUserNotificationManager::~DQUserNotificationManager() {
    if (center_ != nullptr) {
        center_->setActivationHandler({});
    }
}

bool DQUserNotificationManager::sendNotification(
    const QString& identifier, const QString& title, const QString& informativeText,
    bool asAppendix, const std::vector<platform::UserNotification::Action>& actions) {
    if (center_ == nullptr) {
        return false;
    }
    if (identifier.isEmpty() || informativeText.isEmpty()) {
        return center_->deliver({{}, title, informativeText, category(identifier), actions});
    }
    const QString fullIdentifier = u"%1: %2"_s.arg(identifierPrefix, identifier);
    const bool gathersAll = defaults_.get(settings::coalesceUserNotifications);
    if (!gathersAll && asAppendix) {
        return center_->deliver({{}, title, informativeText, category(identifier), actions});
    }
    if (!gathersAll) {
        const int others = unseen_[identifier]++ - mostAlone;
        const QString text = others > 0 ? informativeText + u'\n' +
                                              links::filledFormat(links::localized("and %@ more"),
                                                                  {QString::number(others)})
                                        : informativeText;
        return center_->deliver(
            {others < 0 ? QString() : fullIdentifier, title, text, category(identifier), actions});
    }
    return center_->deliver({fullIdentifier, title,
                             coalescedText(fullIdentifier, informativeText, asAppendix),
                             category(identifier)});
}

QString DQUserNotificationManager::coalescedText(const QString& fullIdentifier, const QString& text,
                                                 bool asAppendix) {
    QStringList& texts = coalescedNotificationInformativeTextsByIdentifier[fullIdentifier];
    const bool putsNewestFirst = defaults_.get(settings::invertUserNotifications);
    if (texts.size() >= mostTexts) {
        putsNewestFirst ? texts.removeLast() : texts.removeFirst();
    }
    if (!texts.isEmpty() && !asAppendix && putsNewestFirst) {
        texts.prepend(text);
    } else if (!texts.isEmpty() && asAppendix) {
        texts.append(u'\n' + text);
    } else {
        texts.append(text);
    }
    return texts.join(u'\n');
}

void DQUserNotificationManager::wereSeen() {
    coalescedNotificationInformativeTextsByIdentifier.clear();
    unseen_.clear();
    if (center_ != nullptr) {
        center_->withdrawAll();
    }
}

void DQUserNotificationManager::didActivateNotification(const QString& fullIdentifier) {
    coalescedNotificationInformativeTextsByIdentifier.remove(fullIdentifier);
    activated_();
}

}  // namespace app
