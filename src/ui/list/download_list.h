#pragma once

#include <QListView>
#include <QTimer>
#include <memory>
#include <optional>

#include "engine/lifecycle/download.h"
#include "ui/list/download_cell.h"
#include "ui/list/empty_list_text.h"
#include "ui/list/row_geometry.h"

namespace app {
class Rows;
}

namespace ui {

class DownloadListModel;
class EmptyListOffers;
class StripeMotion;
class VanishingRows;

/// Where a drag over the list would land.
struct DropMark {
    enum class Kind { None, WholeList, AboveRow };
    Kind kind = Kind::None;
    int row = 0;

    friend bool operator==(const DropMark&, const DropMark&) = default;
};

/// The list of downloads: one row each, all of one height but those that are collapsing, so that
/// any number of rows scrolls alike.
class DQDownloadList final : public QListView {
    Q_OBJECT

public:
    /// `state` outlives it.
    explicit DQDownloadList(app::Rows& state, QWidget* parent = nullptr);
    ~DQDownloadList() override;

    [[nodiscard]] DownloadListModel& rows() const { return *rows_; }
    [[nodiscard]] int rowHeight() const { return geometry_.rowHeight(); }
    /// Of all rows, in pixels.
    [[nodiscard]] int contentHeight() const;
    [[nodiscard]] bool hasItems() const;
    /// Whether the user holds the keys that ask for the other way of doing a thing.
    [[nodiscard]] bool isAlternateFunctionalityEvent() const;
    [[nodiscard]] const std::shared_ptr<VanishingRows>& vanishingRows() const { return vanishing_; }

    void reloadRows(std::shared_ptr<const std::vector<engine::DownloadPtr>> rows,
                    const QList<qsizetype>& selectedRows);
    void selectRows(const QList<qsizetype>& rows);
    /// Brings the first row that is selected into sight.
    void scrollToSelection();
    /// Says why it is empty when it is: the filter shows none of the downloads.
    void setFilteredOut(bool isFilteredOut);
    void setNeedsDisplayAfterDelay(double seconds);
    void setDropMark(const DropMark& mark);
    /// Frames the row that an open menu is about; -1: none.
    void setMenuRow(int row);

    [[nodiscard]] QRect visualRect(const QModelIndex& index) const override;
    [[nodiscard]] QModelIndex indexAt(const QPoint& point) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint) override;
    void doItemsLayout() override;

Q_SIGNALS:
    /// The user has selected exactly these rows.
    void selectionMade(const QList<qsizetype>& rows);
    /// `row` is -1 below the last one.
    void contextMenuWanted(int row, const QPoint& globalPosition);
    void removeWanted();
    void pauseToggleWanted();
    /// The user drags these rows.
    void dragWanted(const QList<qsizetype>& rows);
    void contentHeightChanged();
    /// What the empty list offers.
    void pasteWanted();
    void addWanted();

protected:
    bool viewportEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;
    void updateGeometries() override;
    void selectionChanged(const QItemSelection& selected,
                          const QItemSelection& deselected) override;
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags flags) override;
    [[nodiscard]] QRegion visualRegionForSelection(const QItemSelection& selection) const override;
    [[nodiscard]] QModelIndex moveCursor(CursorAction action,
                                         Qt::KeyboardModifiers modifiers) override;
    [[nodiscard]] int verticalOffset() const override;
    [[nodiscard]] int horizontalOffset() const override { return 0; }

private:
    struct PressedButton {
        engine::DownloadPtr download;
        unsigned index = 0;
    };

    /// Where a row begins, in the content's coordinates.
    [[nodiscard]] int topOfRow(int row) const;
    [[nodiscard]] int heightOfRow(int row) const;
    [[nodiscard]] int rowAtContentY(int y) const;
    /// The row's action button under the point; 0 for none.
    [[nodiscard]] unsigned actionButtonAt(int row, const QPoint& point) const;
    struct PlacedButton {
        int row = -1;
        unsigned index = 0;

        friend bool operator==(const PlacedButton&, const PlacedButton&) = default;
    };
    [[nodiscard]] PlacedButton buttonUnder(const QPoint& point) const;
    void setPointer(const std::optional<QPoint>& point);
    bool showButtonToolTip(const QHelpEvent& event);
    bool trackActionButton(const QPoint& point);
    void highlightPressedButton(bool isInside);
    /// Whether the motion is one that drags rows and not one that selects them.
    bool trackDrag(const QPoint& point);
    [[nodiscard]] QList<qsizetype> selectedRows() const;
    void setFocusShown(bool isShown);
    void paintDropMark(QPainter& painter) const;
    void paintMarks(QPainter& painter) const;
    void paintRows(QPainter& painter, const QRect& area);
    void markSelected(const QList<qsizetype>& rows);
    void restoreCurrentRow(const engine::DQDownload* download);
    void noteEmptiness();
    void placeOffers();
    void fadeInStep();

    RowGeometry geometry_;
    DQDownloadCell cell_;
    DownloadListModel* rows_;
    app::Rows& state_;
    std::shared_ptr<VanishingRows> vanishing_;
    EmptyListText emptyText_;
    EmptyListOffers* offers_;
    int offersHeight_ = 0;
    std::unique_ptr<StripeMotion> stripes_;
    std::optional<QPoint> pointer_;
    PressedButton pressed_;
    /// Where a press began that may yet drag rows.
    std::optional<QPoint> dragOrigin_;
    DropMark dropMark_;
    int menuRow_ = -1;
    QTimer delayedDisplay_, minute_, fade_;
    bool _didHaveItems = false;
    bool isFocusShown_ = false;
    bool reportsSelection_ = true;
};

}  // namespace ui
