#pragma once

#include <QWidget>

#include "desktop/updates/news_manager.h"

class QTextBrowser;

namespace ui {

/// A page of news: text that reaches for nothing, neither pictures nor other pages.
class NewsWindow final : public QWidget {
    Q_OBJECT

public:
    /// Outlive the window.
    explicit NewsWindow(platform::UserDefaults& defaults);

    void populateWithNews(const desktop::News& news);

private:
    [[nodiscard]] QWidget* makeExplanationBar(platform::UserDefaults& defaults);

    QTextBrowser* text_;
};

}  // namespace ui
