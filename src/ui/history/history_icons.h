#pragma once

#include <QHash>
#include <QIcon>

#include "app/history/history_entry.h"

namespace ui {

/// The icons of entries, by their addresses.
class HistoryIcons {
public:
    /// That of the file, or if the file is not where it was a symbol for an address.
    [[nodiscard]] QIcon icon(const app::HistoryEntry& entry);
    void clear() { _iconsByURLString.clear(); }

private:
    QHash<QString, QIcon> _iconsByURLString;
};

}  // namespace ui
