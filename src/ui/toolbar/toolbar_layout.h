#pragma once

#include <QStringList>

#include "platform/base/user_defaults.h"

namespace ui {

/// Identifiers of the toolbar's items, as they are stored.
namespace toolbaritem {
inline const QString queuePause = QStringLiteral("Queue/Pause");
inline const QString autoQueuePause = QStringLiteral("Auto-Queue/Pause");
inline const QString accelerateThrottle = QStringLiteral("Accelerate/Throttle");
inline const QString addFromPasteboard = QStringLiteral("Add from Pasteboard");
inline const QString moreActions = QStringLiteral("More Actions");
inline const QString filter = QStringLiteral("Filter");
inline const QString separator = QStringLiteral("Separator");
inline const QString space = QStringLiteral("Space");
inline const QString flexibleSpace = QStringLiteral("Flexible Space");
inline const QString customize = QStringLiteral("Customize");
}  // namespace toolbaritem

/// Which items the toolbar has, in which order, as the user arranged them.
class ToolbarLayout {
public:
    /// `isThrottlingSupported`: the two sets of items are kept apart.
    ToolbarLayout(platform::UserDefaults& defaults, bool isThrottlingSupported);

    [[nodiscard]] QStringList allowedItems() const;
    [[nodiscard]] QStringList defaultItems() const;
    [[nodiscard]] QStringList items() const;
    void setItems(const QStringList& items);
    /// Whether the toolbar can hold several of them.
    [[nodiscard]] static bool isRepeatable(const QString& item);
    /// In the user's language.
    [[nodiscard]] static QString label(const QString& item);
    /// Name of the drawing that stands for it; empty: none.
    [[nodiscard]] static QString symbol(const QString& item);

    /// Of the toolbar, telling the two sets of items apart.
    [[nodiscard]] QString identifier() const { return setting_.name(); }

private:
    platform::UserDefaults& defaults_;
    bool isThrottlingSupported_;
    const platform::Setting<QStringList>& setting_;
};

}  // namespace ui
