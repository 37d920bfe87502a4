#pragma once

#include <QComboBox>
#include <optional>

#include "app/rules/folder_menu.h"

namespace ui {

/// A popup with the folders that are offered for choice, among them the one in force, and a way to
/// any other. The items are looked up anew whenever the popup opens.
class FolderSelector final : public QComboBox {
    Q_OBJECT

public:
    enum class Use {
        General,  ///< There is always a folder.
        Rule,     ///< There may be none: the general one applies.
    };

    /// Both outlive the selector.
    FolderSelector(Use use, const app::RuleBook& rules, platform::UserDefaults& defaults,
                   QWidget* parent);

    /// Abbreviated with a tilde or not. Nothing: none.
    void setFolder(const std::optional<QString>& folder);
    [[nodiscard]] const std::optional<QString>& folder() const { return folder_; }

    void showPopup() override;

protected:
    /// Leafing through the items of the closed popup would also do what the last ones stand for.
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

Q_SIGNALS:
    /// The user has chosen `folder`, abbreviated with a tilde.
    void folderChosen();

private:
    void fill();
    void addItemFor(const app::FolderMenuItem& item);
    void act(int index);
    void choose(const std::optional<QString>& folder);
    void askForOther();

    const Use use_;
    const app::RuleBook& rules_;
    platform::UserDefaults& defaults_;
    std::optional<QString> folder_;
};

/// Asks for a folder, beginning at `path`. Abbreviated with a tilde; empty: cancelled.
[[nodiscard]] QString chooseFolder(QWidget* window, const QString& path);

}  // namespace ui
