#pragma once

#include <QDialog>
#include <memory>

#include "engine/lifecycle/download.h"
#include "engine/lifecycle/new_address.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace app {
class DQMainController;
}

namespace ui {

/// Takes another address for a download, asks there whether it is the same file, and says so if it
/// is not, before anything of the download changes. Not modal; goes when it is closed.
class AddressPanel final : public QDialog {
    Q_OBJECT

public:
    /// The controller outlives it.
    AddressPanel(app::DQMainController& controller, const engine::DownloadPtr& download,
                 QWidget& window);
    ~AddressPanel() override;

private:
    void makeContents();
    [[nodiscard]] QString proposal() const;
    void addressDidChange();
    void press();
    void ask(const platform::Url& url);
    void judge(const engine::AddressAnswer& answer);
    void goOn(const engine::AddressAnswer& answer);

    app::DQMainController& controller_;
    const engine::DownloadPtr download_;
    QLineEdit* field_;
    QLabel* note_;
    QPushButton* accept_ = nullptr;
    std::optional<platform::Url> url_;  ///< As the field has it.
    std::unique_ptr<engine::AddressCheck> check_;
    /// What the address has been found to be. Nothing: it was not asked.
    std::optional<engine::AddressAnswer> answer_;
};

}  // namespace ui
