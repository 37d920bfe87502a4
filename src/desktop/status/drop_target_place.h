#pragma once

#include <QList>
#include <QPointF>
#include <QRect>
#include <QString>

namespace desktop {

/// A screen as far as small windows may use it, in the desktop's coordinates.
struct ScreenRoom {
    QString name;
    QRect available;
};

/// Where the drop target stands, in a form that outlasts a change of the screens: what stands at
/// an edge stays there.
struct DropTargetPlace {
    /// Of the room that is left beside it: 0 is the left or upper edge, 1 the other one.
    QPointF fraction{1.0, 0.25};
    QString screen = {};

    bool operator==(const DropTargetPlace&) const = default;
};

/// The width of the target, in device-independent pixels, for what the settings say.
[[nodiscard]] int dropTargetWidth(qint64 setting);

/// For a frame that the user has moved: near an edge it sticks to it. `screens` is not empty.
[[nodiscard]] DropTargetPlace placeOfFrame(const QRect& frame, const QList<ScreenRoom>& screens);
/// On the screen it was on, or else the first. `screens` is not empty.
[[nodiscard]] QRect frameAtPlace(const DropTargetPlace& place, QSize size,
                                 const QList<ScreenRoom>& screens);

/// As in "1 0.25 DP-1".
[[nodiscard]] QString placeText(const DropTargetPlace& place);
/// What cannot be read stands for the usual place.
[[nodiscard]] DropTargetPlace placeFromText(const QString& text);

}  // namespace desktop
