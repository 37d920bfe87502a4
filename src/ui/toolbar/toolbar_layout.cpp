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
      identifier_(isThrottlingSupported ? settings::mainToolbarWithThrottling.name()
                                        : settings::mainToolbar.name()) {}

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
    if (!defaults_.hasValueForKey(identifier_)) {
        return defaultItems();
    }
    const QStringList allowed = allowedItems();
    QStringList items;
    for (const QString& stored : defaults_.stringArrayForKey(identifier_)) {
        if (allowed.contains(stored) && (isRepeatable(stored) || !items.contains(stored))) {
            items.append(stored);
        }
    }
    return items;
}

void ToolbarLayout::setItems(const QStringList& items) {
    if (items == defaultItems()) {
        defaults_.removeObject(identifier_);
    } else {
        defaults_.setObject(identifier_, items);
    }
}

bool ToolbarLayout::isRepeatable(const QString& item) {
    return item == item::separator || item == item::space || item == item::flexibleSpace;
}

QString ToolbarLayout::label(const QString& item) {
    static const std::pair<QString, const char*> labels[] = {
        {item::queuePause, translatable("Start/Pause")},
        {item::autoQueuePause, translatable("Start/Pause According to Schedule")},
        {item::accelerateThrottle, translatable("Accelerate Downloads/Throttle Bandwidth")},
        {item::addFromPasteboard, translatable("Add from Pasteboard")},
        {item::moreActions, translatable("More Actions")},
        {item::filter, translatable("Filter")},
        {item::separator, translatable("Separator")},
        {item::space, translatable("Space")},
        {item::flexibleSpace, translatable("Flexible Space")},
        {item::customize, translatable("Customize")},
    };
    const auto found = std::find_if(std::begin(labels), std::end(labels),
                                    [&](const auto& label) { return label.first == item; });
    return found == std::end(labels) ? item : translated(found->second);
}

}  // namespace ui
