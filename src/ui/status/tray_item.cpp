#include "ui/status/tray_item.h"

#include <chrono>

#include "ui/x11.h"

using namespace std::chrono_literals;

namespace ui {

TrayItem::TrayItem() {
    patience_.setSingleShot(true);
    patience_.setInterval(5s);
    connect(&patience_, &QTimer::timeout, this, &TrayItem::tellOfAbsence);
    connect(&host_, &desktop::StatusNotifierHost::changed, this, [this] {
        // A watcher that was started again has forgotten what it showed.
        item_.reset();
        update();
    });
    // Nobody tells when a tray of X11 comes or goes.
    look_.setInterval(5s);
    connect(&look_, &QTimer::timeout, this, &TrayItem::update);
}

TrayItem::~TrayItem() = default;

std::optional<TrayItem::Way> TrayItem::wayNow() const {
    const bool hasHost = host_.state() == desktop::StatusNotifierHost::State::Present;
    if (hasHost && decided_ != Way::SystemTray) {
        return Way::StatusNotifier;
    }
    const bool mayDock = decided_ != Way::StatusNotifier &&
                         host_.state() == desktop::StatusNotifierHost::State::Absent;
    if (mayDock && x11::hasSystemTray()) {
        return Way::SystemTray;
    }
    return {};
}

void TrayItem::setEnabled(bool isEnabled) {
    if (isEnabled_ == isEnabled) {
        return;
    }
    isEnabled_ = isEnabled;
    hasToldOfAbsence_ = false;
    if (isEnabled) {
        update();
        return;
    }
    patience_.stop();
    look_.stop();
    item_.reset();
    Q_EMIT shownChanged({});
}

void TrayItem::update() {
    if (!isEnabled_) {
        return;
    }
    const auto way = wayNow();
    if (way == Way::StatusNotifier || x11::connection() == nullptr) {
        look_.stop();
    } else {
        look_.start();
    }
    if (!way) {
        item_.reset();
        if (!hasToldOfAbsence_ && !patience_.isActive()) {
            patience_.start();
        }
    } else if (!item_) {
        decided_ = way;
        // Qt looks once more, and a watcher may be none after all.
        if (QSystemTrayIcon::isSystemTrayAvailable()) {
            showAnew();
        } else {
            decided_ = Way::SystemTray;
            update();
        }
    }
}

void TrayItem::showAnew() {
    patience_.stop();
    hasToldOfAbsence_ = false;
    item_ = std::make_unique<QSystemTrayIcon>(icon_);
    item_->setToolTip(toolTip_);
    item_->setContextMenu(menu_);
    connect(item_.get(), &QSystemTrayIcon::activated, this, &TrayItem::react);
    item_->show();
    Q_EMIT shownChanged(true);
}

void TrayItem::tellOfAbsence() {
    if (isEnabled_ && !item_) {
        hasToldOfAbsence_ = true;
        Q_EMIT shownChanged(false);
    }
}

void TrayItem::react(QSystemTrayIcon::ActivationReason reason) {
    if (reason == QSystemTrayIcon::Trigger) {
        Q_EMIT clicked();
    } else if (reason == QSystemTrayIcon::MiddleClick) {
        Q_EMIT middleClicked();
    }
}

void TrayItem::setIcon(const QIcon& icon) {
    icon_ = icon;
    if (item_) {
        item_->setIcon(icon);
    }
}

void TrayItem::setToolTip(const QString& text) {
    toolTip_ = text;
    if (item_) {
        item_->setToolTip(text);
    }
}

void TrayItem::setMenu(QMenu* menu) {
    menu_ = menu;
    if (item_) {
        item_->setContextMenu(menu);
    }
}

}  // namespace ui
