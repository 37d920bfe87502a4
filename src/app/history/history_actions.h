#pragma once

#include <QString>

#include "app/intake/pasteboard.h"

namespace app {

class DQMainController;
struct Workspace;

/// What the user can do with an entry of the history. An action that fails beeps and changes
/// nothing else. Main thread.
class HistoryActions {
public:
    explicit HistoryActions(DQMainController& controller) : controller_(controller) {}

    void open(const QString& path) const;
    void openWithApplication(const QString& path, const QString& identifier) const;
    void reveal(const QString& path) const;
    /// Also takes the download out of the queue, if it is done.
    void moveToTrash(const QString& path) const;
    void copyPath(const QString& path) const;

    void openOriginalURL(const QString& url) const;
    void copyOriginalURL(const QString& url) const;
    /// As a new download, unless the address is in the queue.
    void download(const QString& url) const;

private:
    void beepUnless(bool didWork) const;
    [[nodiscard]] const Workspace& workspace() const;
    void copy(const Pasteboard& pasteboard) const;

    DQMainController& controller_;
};

}  // namespace app
