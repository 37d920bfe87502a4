#pragma once

#include <QSplitter>

#include "platform/base/observation.h"

namespace app {
class Commands;
}
namespace platform {
class UserDefaults;
}

namespace ui {

class DetailsPane;

/// The list, and below or beside it the details, as the settings say; what the user changes is
/// kept in them.
class DetailsSplitter final : public QSplitter {
    Q_OBJECT

public:
    /// Provides the commands that show and move the details. The commands outlive it.
    DetailsSplitter(app::Commands& commands, QWidget* parent);

    /// To be called once, when all other commands are provided.
    void addDetails(QWidget& list, const app::Commands& commands);

Q_SIGNALS:
    /// The list has less or more room than before.
    void arrangementChanged();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void followSettings();
    void keepSize();

    platform::UserDefaults& defaults_;
    DetailsPane* pane_ = nullptr;
    platform::Observation observation_;
};

}  // namespace ui
