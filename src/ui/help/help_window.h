#pragma once

#include <QDialog>

class QMenuBar;
class QTextBrowser;

namespace ui {

/// How to work with the program, in short, and the keys of all commands.
class HelpWindow final : public QDialog {
    Q_OBJECT

public:
    /// The keys are those of the actions in `menus`.
    HelpWindow(const QMenuBar& menus, QWidget* parent);

private:
    QTextBrowser* text_;
};

/// Brings up the help of the window, of which there is one.
void showHelp(QWidget& window, const QMenuBar& menus);

}  // namespace ui
