#pragma once

#include <QStringList>

namespace app {
struct Pasteboard;
}

namespace desktop {

/// Where drops on the status item go. Main thread.
class DQStatusItemDragAndDropDestination {
public:
    virtual ~DQStatusItemDragAndDropDestination() = default;

    /// MIME types. A drag that has none of them is not looked at.
    [[nodiscard]] virtual QStringList draggedTypesAcceptedByStatusItem() const = 0;
    [[nodiscard]] virtual bool canDropPasteboard(const app::Pasteboard& pasteboard) const = 0;
    /// Whether the drop was taken.
    virtual bool dropPasteboard(const app::Pasteboard& pasteboard) = 0;
    /// A drag has rested on the item. Whether something happened.
    virtual bool springLoadStatusItem() = 0;
};

}  // namespace desktop
