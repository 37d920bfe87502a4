#pragma once

#include <QPalette>
#include <QRect>
#include <QString>
#include <optional>

#include "app/rows/row_actions.h"
#include "app/rows/status_text.h"
#include "ui/list/row_colors.h"

class QBrush;
class QPainter;

namespace app {
class Rows;
}
namespace engine {
class DQDownload;
}

namespace ui {

class RowGeometry;

/// After so many pixels the stripes of progress without a known end look the same again.
inline constexpr int stripesPeriod = 20;

/// Draws one row. Filled from a download just before it is drawn; keeps nothing between rows.
class DQDownloadCell {
public:
    explicit DQDownloadCell(const RowGeometry& geometry) : geometry_(geometry) {}

    /// `live`: the list itself is being drawn, so that the texts are those of this moment.
    void reflectDownload(app::Rows& rows, engine::DQDownload& download, bool live);

    struct Surroundings {
        QRect row;
        RowColors colors;
        QColor separator;
        Qt::LayoutDirection direction = Qt::LeftToRight;
        qreal devicePixelRatio = 1;
        bool isSelected = false;
        bool isActiveWindow = true;
        bool drawsBottomSeparator = true;
        /// Of the row's buttons; 0: none.
        unsigned buttonUnderPointer = 0;
        /// How far the stripes of progress without a known end have moved, in pixels.
        int stripesOffset = 0;
        ProgressBarStyle style = ProgressBarStyle::LivelyBackground;
    };
    void paint(QPainter& painter, const Surroundings& surroundings) const;

    [[nodiscard]] int shownButtons() const;
    /// Whether it shows that something comes, and not how much of all.
    [[nodiscard]] bool hasStripes() const { return isLengthUnknown_ && showsProgress(); }

private:
    enum class Trouble { None, Interrupted, Failed };
    struct TextFrames {
        QRect name, status;
        /// At the end of which columns stand.
        QRect room;
    };

    void reflectTexts(const app::StatusTexts& texts, engine::DQDownload& download);
    [[nodiscard]] bool showsProgress() const;
    [[nodiscard]] QBrush progressBrush(const Surroundings& surroundings, const QRect& area) const;
    [[nodiscard]] bool showsColumns(const Surroundings& surroundings) const;
    [[nodiscard]] TextFrames textFrames(const Surroundings& surroundings) const;
    void paintColumns(QPainter& painter, const Surroundings& surroundings, const QRect& room) const;
    void paintPill(QPainter& painter, const Surroundings& surroundings) const;
    void paintText(QPainter& painter, const Surroundings& surroundings, const QRect& frame,
                   const QString& text, Qt::LayoutDirection direction) const;
    void paintBackground(QPainter& painter, const Surroundings& surroundings) const;
    void paintProgress(QPainter& painter, const Surroundings& surroundings) const;
    void paintIcon(QPainter& painter, const Surroundings& surroundings) const;
    void paintTexts(QPainter& painter, const Surroundings& surroundings) const;
    void paintActionButton(QPainter& painter, const Surroundings& surroundings,
                           unsigned index) const;

    const RowGeometry& geometry_;
    int _finalStatus = 0;  ///< 1 done, -1 aborted, 0 neither.
    bool _isPaused = false;
    app::PrimaryAction primary_ = app::PrimaryAction::Pause;
    Trouble trouble_ = Trouble::None;
    double _fraction = 0;
    double _vanishFraction = -1;
    bool _canPerformAction1 = false;
    bool _canPerformAction2 = false;
    unsigned _highlightedActionButtonIndex = 0;
    bool isLive_ = false;
    std::optional<QString> _icon;
    QString name_;
    QString _statusDescription;
    /// Of a running download, whose columns stand beside `bytes_` in wide rows.
    app::StatusTexts::Progress progress_;
    QString bytes_;
    bool isLengthUnknown_ = false;
};

}  // namespace ui
