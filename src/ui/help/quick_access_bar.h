#pragma once

#include <QWidget>
#include <functional>

#include "help/help_manager.h"

class QHBoxLayout;

namespace ui {

/// A row of menus over a page, one for each category of anchors that the page offers.
class QuickAccessBar final : public QWidget {
    Q_OBJECT

public:
    static constexpr int height = 35;

    QuickAccessBar(help::DQHelpManager& manager, bool isCentered, QWidget* parent);

    /// None: the bar goes away.
    void showQuickAccessMenusForCategories(const QStringList& categories);

Q_SIGNALS:
    /// Path and fragment of what was chosen: "page.html#name".
    void chosen(const QString& target);

private:
    help::DQHelpManager& manager_;
    const bool isCentered_;
    QHBoxLayout* row_;
};

}  // namespace ui
