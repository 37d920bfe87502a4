#pragma once

#include <QStringList>

#include "platform/session/notifications.h"

namespace support {

/// A desktop's notifications in memory.
class MemoryNotifications final : public platform::UserNotificationCenter {
public:
    std::vector<platform::UserNotification> delivered;
    std::function<void(const QString&)> activate;

    /// "TITLE: TEXT" of each since the last call.
    QStringList takeTexts() {
        QStringList texts;
        for (const platform::UserNotification& notification : delivered) {
            texts.append(notification.title + QStringLiteral(": ") + notification.text);
        }
        delivered.clear();
        return texts;
    }

    bool deliver(const platform::UserNotification& notification) override {
        delivered.push_back(notification);
        return true;
    }
    int withdrawals = 0;
    void withdrawAll() override { ++withdrawals; }
    void setActivationHandler(std::function<void(const QString&)> handler) override {
        activate = std::move(handler);
    }
};

}  // namespace support
