#pragma once

#include <QTimer>
#include <QWidget>
#include <memory>

#include "app/commands/commands.h"
#include "app/details/connections.h"

class QBoxLayout;
class QLabel;
class QTableView;
class QToolButton;

namespace engine {
class DQDownload;
}

namespace ui {

class ConnectionsModel;
class FactsModel;
class SpeedCurve;

/// All that is known of the download that is selected: facts, connections and speed. Looks at it
/// only while it is shown, twice a second while something comes and until the curve has run out.
class DetailsPane final : public QWidget {
    Q_OBJECT

public:
    /// The commands outlive it.
    explicit DetailsPane(const app::Commands& commands, QWidget* parent);
    ~DetailsPane() override;

Q_SIGNALS:
    void closeWanted();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void makeActions();
    [[nodiscard]] QToolButton* makeCloseButton();
    void addCommand(app::Command command, const QString& text);
    void makeTables();
    void copyFacts();
    void followSelection();
    void downloadDidChange(const engine::DQDownload& download);
    void refresh();
    void showDownload(engine::DQDownload& download);
    void showConnections(std::vector<app::Connection> connections);
    void updateActions();

    const app::Commands& commands_;
    app::DQMainController& controller_;
    FactsModel* factsModel_;
    ConnectionsModel* connectionsModel_;
    QWidget* actions_;
    QLabel* hint_;
    QWidget* contents_;
    QBoxLayout* arrangement_;
    QTableView* facts_ = nullptr;
    QTableView* connections_ = nullptr;
    SpeedCurve* curve_ = nullptr;
    /// What is shown. None: not exactly one row is selected.
    std::weak_ptr<engine::DQDownload> shown_;
    app::ConnectionMeter meter_;
    QTimer refresh_;
};

}  // namespace ui
