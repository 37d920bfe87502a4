#include "ui/status/status_items.h"

#include <QCursor>
#include <QGuiApplication>
#include <chrono>

#include "app/commands/bulk_commands.h"
#include "app/commands/commands.h"
#include "app/lifecycle/lifecycle.h"
#include "app/settings.h"
#include "app/status/queue_status.h"
#include "desktop/icon/application_icon.h"
#include "desktop/settings.h"
#include "links/text/typography.h"
#include "platform/base/user_defaults.h"
#include "ui/status/status_item_menu.h"
#include "ui/x11.h"

using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

/// For panels, which scale it to what they like.
constexpr int itemImageSize = 64;

enum DropTargetShown : qint64 { withStatusItem = 0, always = 1 };

QIcon itemIcon(const QImage& image) {
    return QPixmap::fromImage(
        image.scaled(itemImageSize, itemImageSize, Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

}  // namespace

StatusItems::StatusItems(app::Commands& commands, desktop::ApplicationIcon& icon)
    : commands_(commands),
      controller_(commands.surroundings().defaults,
                  commands.surroundings().controller.surroundings().loop),
      target_(controller_, commands.surroundings().defaults) {
    const auto& around = commands.surroundings();
    controller_.setDragAndDropDestination(this);
    const auto show = [this](const QImage& image) {
        tray_.setIcon(itemIcon(image));
        controller_.setStatusItemImage(image);
    };
    show(icon.image());
    connect(&icon, &desktop::ApplicationIcon::changed, this, show);
    makeMenu();

    toolTipUpdate_.setSingleShot(true);
    toolTipUpdate_.setInterval(500ms);
    connect(&toolTipUpdate_, &QTimer::timeout, this, &StatusItems::updateToolTip);
    connect(&around.controller, &app::DQMainController::statusChanged, this, [this] {
        if (!toolTipUpdate_.isActive()) {
            toolTipUpdate_.start();
        }
    });
    updateToolTip();

    connect(&tray_, &TrayItem::shownChanged, this, &StatusItems::itemDidChange);
    connect(&tray_, &TrayItem::clicked, this, [this] { showMenu(QCursor::pos()); });
    connect(&tray_, &TrayItem::middleClicked, this, &StatusItems::togglePause);
    connect(&target_, &DropTarget::clicked, this,
            [this] { commands_.perform(app::Command::ShowDownloadWindow); });
    connect(&target_, &DropTarget::menuWanted, this, &StatusItems::showMenu);
    observation_ = around.defaults.observe([this](const QString& key) {
        if (key == app::settings::useStatusItemMetaSubmenu.name()) {
            makeMenu();
        } else if (key == app::settings::applicationMode.name() ||
                   key == desktop::settings::dropTarget.name()) {
            updateStatusItem();
        }
    });
    updateStatusItem();
}

StatusItems::~StatusItems() {
    controller_.setDragAndDropDestination(nullptr);
    tray_.disconnect(this);
    tray_.setEnabled(false);
}

void StatusItems::makeMenu() {
    auto menu = std::make_unique<StatusItemMenu>(commands_);
    tray_.setMenu(menu.get());
    menu_ = std::move(menu);
}

void StatusItems::updateStatusItem() {
    const platform::UserDefaults& defaults = commands_.surroundings().defaults;
    tray_.setEnabled(defaults.get(app::settings::applicationMode) >= 1);
    const qint64 shown = defaults.get(desktop::settings::dropTarget);
    target_.setWanted(shown == always || (shown == withStatusItem && isItemShown_.value_or(false)));
}

void StatusItems::itemDidChange(std::optional<bool> isShown) {
    isItemShown_ = isShown;
    updateStatusItem();
    commands_.surroundings().controller.lifecycle().statusItemDidChange(isShown);
}

void StatusItems::updateToolTip() {
    const app::QueueStatus status = commands_.surroundings().controller.queueStatus();
    QStringList lines{status.text.isEmpty() ? u"Orlop"_s : u"Orlop: "_s + status.text};
    if (!status.totals.isEmpty())
        lines.append(links::stringWithDashesForHyphens(status.totals));
    tray_.setToolTip(lines.join(u'\n'));
}

/// Where a program cannot say where its menu opens, the item's own is had by its other button.
void StatusItems::showMenu(const QPoint& position) {
    if (QGuiApplication::platformName().startsWith(u"wayland") && !target_.underMouse()) {
        commands_.perform(app::Command::ShowDownloadWindow);
        return;
    }
    menu_->popup(position);
}

void StatusItems::togglePause() {
    app::DQMainController& controller = commands_.surroundings().controller;
    app::togglePause(controller.queue(), app::Downloads(controller.downloads()));
}

QStringList StatusItems::draggedTypesAcceptedByStatusItem() const {
    return {u"text/uri-list"_s, u"text/plain"_s, u"text/plain;charset=utf-8"_s};
}

bool StatusItems::canDropPasteboard(const app::Pasteboard& pasteboard) const {
    return commands_.surroundings().controller.canDropPasteboard(pasteboard);
}

bool StatusItems::dropPasteboard(const app::Pasteboard& pasteboard) {
    return commands_.surroundings().controller.dropPasteboard(pasteboard);
}

bool StatusItems::springLoadStatusItem() {
    app::Presence& presence = commands_.surroundings().frontEnd.presence;
    const bool isInFront =
        QGuiApplication::applicationState() == Qt::ApplicationActive && !presence.isHidden();
    if (!isInFront) {
        presence.showDownloadWindow(true);
    }
    return !isInFront;
}

}  // namespace ui
