#include "desktop/status/drop_target_place.h"

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace desktop {
namespace {

constexpr int imageWidth = 48;
constexpr qint64 mostWidth = 100;
/// How near to an edge is at the edge.
constexpr int stickiness = 24;

/// Along one side of the screen: `at` pixels of `room` free ones.
double fractionOf(int at, int room) {
    if (at <= stickiness || room <= 0) {
        return 0;
    }
    return at >= room - stickiness ? 1 : static_cast<double>(at) / room;
}

/// How far a point is from a screen.
int distance(QPoint point, const QRect& screen) {
    const QPoint nearest(std::clamp(point.x(), screen.left(), screen.right()),
                         std::clamp(point.y(), screen.top(), screen.bottom()));
    return (point - nearest).manhattanLength();
}

const ScreenRoom& screenNamed(const QString& name, const QList<ScreenRoom>& screens) {
    const auto found = std::find_if(screens.begin(), screens.end(),
                                    [&](const auto& screen) { return screen.name == name; });
    return found == screens.end() ? screens.first() : *found;
}

}  // namespace

int dropTargetWidth(qint64 setting) {
    return static_cast<int>(std::clamp(setting, qint64{imageWidth}, mostWidth));
}

DropTargetPlace placeOfFrame(const QRect& frame, const QList<ScreenRoom>& screens) {
    const ScreenRoom& screen = *std::min_element(
        screens.begin(), screens.end(), [&](const ScreenRoom& a, const ScreenRoom& b) {
            return distance(frame.center(), a.available) < distance(frame.center(), b.available);
        });
    const QPoint at = frame.topLeft() - screen.available.topLeft();
    const QSize room = screen.available.size() - frame.size();
    return {{fractionOf(at.x(), room.width()), fractionOf(at.y(), room.height())}, screen.name};
}

QRect frameAtPlace(const DropTargetPlace& place, QSize size, const QList<ScreenRoom>& screens) {
    const QRect available = screenNamed(place.screen, screens).available;
    const QSize room = (available.size() - size).expandedTo({0, 0});
    return {available.topLeft() + QPoint(qRound(place.fraction.x() * room.width()),
                                         qRound(place.fraction.y() * room.height())),
            size};
}

QString placeText(const DropTargetPlace& place) {
    return u"%1 %2 %3"_s.arg(place.fraction.x()).arg(place.fraction.y()).arg(place.screen);
}

DropTargetPlace placeFromText(const QString& text) {
    bool hasX = false, hasY = false;
    const double x = text.section(u' ', 0, 0).toDouble(&hasX);
    const double y = text.section(u' ', 1, 1).toDouble(&hasY);
    const auto isFraction = [](double value) { return value >= 0 && value <= 1; };
    if (!hasX || !hasY || !isFraction(x) || !isFraction(y)) {
        return {};
    }
    return {{x, y}, text.section(u' ', 2)};
}

}  // namespace desktop
