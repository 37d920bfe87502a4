#pragma once

#include <QString>

namespace app {

/// How the queue as a whole stands, for a window to show.
struct QueueStatus {
    /// As in "2 of 5 downloads". Empty: nothing is unfinished.
    QString text;
    /// Speed and time left of all. Empty: nothing comes.
    QString totals;
    /// The same in short for a title, with how far all has come. Empty: nothing is active.
    QString shortTotals;
    /// Whether finished or failed downloads are there to be cleared away.
    bool canClear = false;
    /// Closing the window now would take running downloads with it.
    bool isDocumentEdited = false;
};

}  // namespace app
