#pragma once

#include <QObject>
#include <QTimer>
#include <memory>
#include <vector>

#include "engine/lifecycle/download.h"

class QDropEvent;
class QMimeData;

namespace app {
class DQMainController;
}

namespace ui {

class DQDownloadList;

/// Drags into the list, within it, and of finished files out of it.
class ListDragging final : public QObject {
    Q_OBJECT

public:
    /// Both outlive it.
    ListDragging(DQDownloadList& list, app::DQMainController& controller);

    /// Says that rows are dragged; holds nothing.
    static constexpr const char16_t* internalType = u"com.tarnworks.Orlop.InternalPasteboardType";

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void startDrag(const QList<qsizetype>& rows);
    /// With the files, if all that is dragged is finished.
    [[nodiscard]] std::unique_ptr<QMimeData> mimeData() const;
    /// Whether the drag may be dropped where it is, with the mark that shows it.
    bool validate(QDropEvent& event);
    bool drop(QDropEvent& event);
    [[nodiscard]] qsizetype rowAt(const QPoint& point) const;
    void scrollNear(const QPoint& point);
    void clearMark();

    DQDownloadList& list_;
    app::DQMainController& controller_;
    std::vector<engine::DownloadPtr> _draggedDownloads;
    /// Whether the contents of the drag now over the list can be taken in.
    bool isAcceptable_ = false;
    QTimer scroll_;
    int scrollStep_ = 0;
};

}  // namespace ui
