#pragma once

#include <QHash>
#include <QWidget>
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
    };

    explicit NoticeBars(QWidget* parent);

    void show(const Notice& notice);
    void take(const QString& matter);

private:
    [[nodiscard]] QWidget* makeBar(const Notice& notice);

    QHash<QString, QWidget*> bars_;
};

}  // namespace ui
