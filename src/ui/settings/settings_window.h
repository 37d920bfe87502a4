#pragma once

#include <QMainWindow>
#include <functional>
#include <vector>

#include "ui/settings/settings_page.h"

class QAction;
class QActionGroup;
class QScrollArea;
class QStackedWidget;
class QToolBar;

namespace ui {

/// The window of the settings, with a toolbar of sections. What the user changes counts at once.
class SettingsWindow final : public QMainWindow {
    Q_OBJECT

public:
    /// Both outlive the window.
    SettingsWindow(app::DQMainController& controller, platform::UserDefaults& defaults,
                   QWidget* parent = nullptr);
    ~SettingsWindow() override;

    /// Brings the window to the front with a section: "General", "Speed", "Schedule", "Feedback",
    /// "History", "Advanced", "Updates" or "Experimental"; any other stands for "General".
    void showPreferencesSection(const QString& identifier = {});
    [[nodiscard]] QString currentSection() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct Section {
        QString identifier;
        QAction* action;
        QScrollArea* area;
        SettingsPage* page;
    };
    using MakePage = SettingsPage* (*)(const SettingsContext&, QWidget*);

    void addSection(const char* identifier, const QString& title, const char* icon, MakePage make);
    void orderFocus();
    void makeShortcuts();
    void showToolbarMenu(const QPoint& position);
    [[nodiscard]] QStringList toolbarSections() const;
    /// Shows those that the user wants, and the current one.
    void updateToolbar();
    void selectSection(const QString& identifier);
    /// To the next section of the toolbar, or with -1 to the one before.
    void step(int direction);
    void fitToSection();
    void standOnTheScreenInUse();
    void centre();
    void keepOnTheScreen();
    [[nodiscard]] const Section& current() const;

    SettingsBinder binder_;
    SettingsContext context_;
    QToolBar* toolbar_;
    QActionGroup* actions_;
    QStackedWidget* pages_;
    std::vector<Section> sections_;
};

}  // namespace ui
