#include "ui/toolbar/toolbar_layout.h"

#include <algorithm>

#include "platform/base/user_defaults.h"
#include "ui/settings.h"
#include "ui/text.h"

namespace ui {

namespace item = toolbaritem;

ToolbarLayout::ToolbarLayout(platform::UserDefaults& defaults, bool isThrottlingSupported)
    : defaults_(defaults),
      isThrottlingSupported_(isThrottlingSupported),
      setting_(isThrottlingSupported ? settings::mainToolbarWithThrottling
                                     : settings::mainToolbar) {}

QStringList ToolbarLayout::allowedItems() const {
    QStringList items{item::queuePause,        item::autoQueuePause, item::accelerateThrottle,
                      item::addFromPasteboard, item::moreActions,    item::filter,
                      item::separator,         item::space,          item::flexibleSpace,
                      item::customize};
    if (!isThrottlingSupported_) {
        items.removeOne(item::accelerateThrottle);
    }
    return items;
}

QStringList ToolbarLayout::defaultItems() const {
    QStringList items{item::queuePause, item::accelerateThrottle, item::moreActions,
                      item::flexibleSpace, item::filter};
    if (!isThrottlingSupported_) {
        items.removeOne(item::accelerateThrottle);
    }
    return items;
}

QStringList ToolbarLayout::items() const {
    if (!defaults_.hasValueForKey(setting_.name())) {
        return defaultItems();
    }
    const QStringList allowed = allowedItems();
    QStringList items;
    for (const QString& stored : defaults_.stringArrayForKey(setting_.name())) {
        if (allowed.contains(stored) && (isRepeatable(stored) || !items.contains(stored))) {
            items.append(stored);
        }
    }
    return items;
}

void ToolbarLayout::setItems(const QStringList& items) {
    if (items == defaultItems()) {
        defaults_.removeObject(setting_.name());
    } else {
        defaults_.setObject(setting_.name(), items);
    }
}

bool ToolbarLayout::isRepeatable(const QString& item) {
    return item == item::separator || item == item::space || item == item::flexibleSpace;
}

namespace {

struct Face {
    QString item;
    const char* label;
    const char* symbol;
};

const Face* faceOf(const QString& wanted) {
    static const Face faces[] = {
        {item::queuePause, translatable("Start/Pause"), "queue-start"},
        {item::autoQueuePause, translatable("Start/Pause According to Schedule"), "schedule-queue"},
        {item::accelerateThrottle, translatable("Accelerate Downloads/Throttle Bandwidth"),
         "accelerate"},
        {item::addFromPasteboard, translatable("Add from Clipboard"), "add-from-pasteboard"},
        {item::moreActions, translatable("More Actions"), "more-actions"},
        {item::filter, translatable("Filter"), "filter"},
        {item::separator, translatable("Separator"), ""},
        {item::space, translatable("Space"), ""},
        {item::flexibleSpace, translatable("Flexible Space"), ""},
        {item::customize, translatable("Customize"), "general"},
    };
    const auto found = std::find_if(std::begin(faces), std::end(faces),
                                    [&](const Face& face) { return face.item == wanted; });
    return found == std::end(faces) ? nullptr : found;
}

}  // namespace

QString ToolbarLayout::label(const QString& item) {
    const Face* face = faceOf(item);
    return face ? translated(face->label) : item;
}

QString ToolbarLayout::symbol(const QString& item) {
    const Face* face = faceOf(item);
    return face ? QString::fromLatin1(face->symbol) : QString();
}

}  // namespace ui
