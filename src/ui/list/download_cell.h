#pragma once

#include <QPixmap>
#include <QStyleOptionViewItem>
#include <optional>

class QPainter;

namespace app {
class Rows;
}
namespace engine {
class DQDownload;
}

namespace ui {

class RowGeometry;

/// "Progress Bar Style".
enum class ProgressBarStyle { LivelyBackground, SubtleBackground, Pill, DividerLine };

/// Draws one row. Filled from a download just before it is drawn; keeps nothing between rows.
class DQDownloadCell {
public:
    explicit DQDownloadCell(const RowGeometry& geometry) : geometry_(geometry) {}

    /// `live`: the list itself is being drawn, so that the texts are those of this moment.
    void reflectDownload(app::Rows& rows, engine::DQDownload& download, bool live);

    struct Surroundings {
        QRect row;
        QPalette palette;
        Qt::LayoutDirection direction = Qt::LeftToRight;
        qreal devicePixelRatio = 1;
        bool isSelected = false;
        bool isActiveWindow = true;
        bool drawsBottomSeparator = true;
        ProgressBarStyle style = ProgressBarStyle::LivelyBackground;
    };
    void paint(QPainter& painter, const Surroundings& surroundings) const;

    [[nodiscard]] int shownButtons() const;

private:
    [[nodiscard]] bool showsProgress() const;
    void paintPill(QPainter& painter, const Surroundings& surroundings, const QColor& color) const;
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
    double _fraction = 0;
    double _vanishFraction = -1;
    bool _canPerformAction1 = false;
    bool _canPerformAction2 = false;
    unsigned _highlightedActionButtonIndex = 0;
    bool isLive_ = false;
    std::optional<QString> _icon;
    QString name_;
    QString _statusDescription;
};

}  // namespace ui
