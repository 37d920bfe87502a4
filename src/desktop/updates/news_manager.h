#pragma once

#include <QObject>
#include <functional>

#include "desktop/updates/document_fetcher.h"

namespace platform {
class UserDefaults;
}

namespace desktop {

/// A page of news and where it came from.
struct News {
    QString html;
    QString address;

    bool operator==(const News&) const = default;
};

/// Where news are shown. Main thread.
class NewsView {
public:
    virtual ~NewsView() = default;

    /// In front of all, with the focus.
    virtual void show(const News& news) = 0;
    /// By itself: behind the window that is in use.
    virtual void showBehind(const News& news) = 0;
    [[nodiscard]] virtual bool isVisible() const = 0;
    /// A small sign that there are news.
    virtual void setAlertShown(bool shown) = 0;
    virtual void beep() = 0;
    /// Asked for by hand, they could not be had; why.
    virtual void tell(const QString& problem) = 0;
};

/// Looks for news once a day: the first ones come up by themselves, later ones are only announced
/// by a sign until somebody wants to read them. Main thread.
class DQNewsManager final : public QObject {
    Q_OBJECT

public:
    /// All of it outlives the manager.
    struct Surroundings {
        platform::UserDefaults& defaults;
        platform::RunLoop& loop;
        DocumentFetcher& fetcher;
        NewsView& view;
    };
    /// `address` is the page of news; empty: there are none.
    DQNewsManager(const Surroundings& surroundings, QString address, QString shortVersion);

    /// Announces what waits from an earlier run.
    void showWaitingNews();
    void launchNews(bool automatically);
    /// The sign was clicked.
    void showNewsFromStatusItem();
    /// The program ends: what stands open comes back.
    void preserveNews();

private:
    void launchNewsWithURL(const QString& address, bool automatically);
    [[nodiscard]] QString addressWithVersion(const QString& address) const;
    void setAutomaticNewsPopUpDisabledAfterDelay(bool automatically);
    void didFetch(const News& news);
    void populateDeferred(const News& news);
    void showByHand(const News& news);
    [[nodiscard]] bool updateNewsVersionFromHTMLContent(const QString& html);
    void setAlertShown(bool shown);
    void forgetLatest();

    Surroundings surroundings_;
    const QString address_, shortVersion_;
    News news_;
    bool isAlertShown_ = false;
    platform::Timer relaunch_, popUpEnd_;
};

/// The number in "DQ_NEWS_VERSION[NUMBER]"; 0 without one.
[[nodiscard]] qint64 newsVersion(const QString& html);

}  // namespace desktop
