#pragma once

#include <QObject>
#include <QTimer>

namespace app {
class DQMainController;
}
namespace platform {
class UserDefaults;
}

namespace ui {

class NoticeBars;

/// Offers addresses that are copied in other programs for download, in a bar, if the settings want
/// that. What is copied here, or is in the list already, is not offered.
class ClipboardWatch final : public QObject {
    Q_OBJECT

public:
    /// All of it outlives the watch.
    ClipboardWatch(app::DQMainController& controller, const platform::UserDefaults& defaults,
                   NoticeBars& notices);

private:
    void look();
    void offer(const QString& text);
    void withdrawKnown();

    app::DQMainController& controller_;
    const platform::UserDefaults& defaults_;
    NoticeBars& notices_;
    QTimer look_;
    QString offered_;  ///< Empty: nothing, or it has been taken.
};

}  // namespace ui
