#pragma once

#include <QMenu>

#include "help/help_manager.h"

namespace ui {

/// The pages of the manual in their order, with their anchors.
class ContentsMenu final : public QMenu {
    Q_OBJECT

public:
    ContentsMenu(help::DQHelpManager& manager, bool listsAnchorsInSubmenus, QWidget* parent);

    /// The page that bears the check mark.
    void setCurrentPath(const QString& path);

Q_SIGNALS:
    /// "page.html" or "page.html#name"
    void chosen(const QString& target);

private:
    void addPage(const help::HelpPage& page, bool isAlone, bool usesSubmenus);
    void addAnchor(QMenu& menu, const help::HelpAnchor& anchor, bool isStructured);
    QAction* addTarget(QMenu& menu, const QString& title, const QString& target);
};

}  // namespace ui
