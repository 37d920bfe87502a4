#pragma once

class QMenu;
class QWidget;

namespace app {
class RuleBook;
}
namespace platform {
class UserDefaults;
}

namespace ui {

/// Adds the choice of the general downloads folder to a menu, with the rules below it. All of it
/// acts by itself; dialogs come up on `window`. To be filled anew whenever the menu opens; `rules`
/// and `defaults` outlive it.
void populateDownloadsFolderMenu(QMenu& menu, app::RuleBook& rules,
                                 platform::UserDefaults& defaults, QWidget* window);

}  // namespace ui
