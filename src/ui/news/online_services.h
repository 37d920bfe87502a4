#pragma once

#include <QObject>
#include <memory>

#include "desktop/updates/document_fetcher.h"
#include "desktop/updates/news_manager.h"
#include "desktop/updates/sparkle_wrapper.h"
#include "ui/status/tray_item.h"

namespace app {
class DQMainController;
}

namespace ui {

class NewsWindow;
class NoticeBars;

/// Updates and news, with where they are shown. One for the process.
class OnlineServices final : public QObject, private desktop::NewsView {
    Q_OBJECT

public:
    /// All of it outlives this.
    OnlineServices(app::DQMainController& controller, platform::UserDefaults& defaults,
                   NoticeBars& notices);
    ~OnlineServices() override;

    [[nodiscard]] desktop::DQNewsManager& news() { return news_; }
    [[nodiscard]] desktop::DQSparkleWrapper& updates() { return updates_; }

Q_SIGNALS:
    void problem(const QString& text);

private:
    void tellOfUpdate(const QString& description);
    void show(const desktop::News& news) override;
    void showBehind(const desktop::News& news) override;
    bool isVisible() const override;
    void setAlertShown(bool shown) override;
    void beep() override;
    void tell(const QString& text) override;
    [[nodiscard]] NewsWindow& window();

    platform::UserDefaults& defaults_;
    NoticeBars& notices_;
    const desktop::OnlineSources sources_ = desktop::onlineSources();
    desktop::HTTPDocumentFetcher fetcher_;
    desktop::DQSparkleWrapper updates_;
    std::unique_ptr<NewsWindow> window_;
    TrayItem newsAlertStatusItem;
    desktop::DQNewsManager news_;
};

/// Opens the page where people find new versions; beeps if none is known.
void visitUpdatePage(const desktop::DQSparkleWrapper& updates);

}  // namespace ui
