#pragma once

#include <QHash>
#include <QWidget>
#include <chrono>
#include <functional>

namespace ui {

/// What the window has to say and offer without getting in the way: a bar for each matter, with a
/// button, until the button is pressed or the bar is closed.
class NoticeBars final : public QWidget {
    Q_OBJECT

public:
    struct Notice {
        /// Of several notices on one matter only the last is shown.
        QString matter;
        QString text;
        QString button;
        std::function<void()> act;
        /// It goes by itself after so long, but not from under the pointer. 0: it stays.
        std::chrono::milliseconds duration{0};
    };

    /// `edge`: where it lies in its window, whose contents begin on its other side.
    explicit NoticeBars(Qt::Edge edge, QWidget* parent);

    void show(const Notice& notice);
    void take(const QString& matter);

private:
    [[nodiscard]] QWidget* makeBar(const Notice& notice);

    void takeAfter(std::chrono::milliseconds duration, const QString& matter);

    const Qt::Edge edge_;
    QHash<QString, QWidget*> bars_;
};

}  // namespace ui
