#pragma once

#include <QObject>

namespace app {
class DQMainController;
}

namespace ui {

/// Whether the program is about to end, by its own doing or with its session. A session that
/// thinks better of it tells nobody; but then the user goes on working here.
class ApproachingEnd final : public QObject {
    Q_OBJECT

public:
    explicit ApproachingEnd(const app::DQMainController& controller);

    [[nodiscard]] bool isNear() const { return isCertain_ || isAnnounced_; }

Q_SIGNALS:
    /// What is not saved now may be lost.
    void announced();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool isCertain_ = false;    ///< The program says so.
    bool isAnnounced_ = false;  ///< The session says so.
};

}  // namespace ui
