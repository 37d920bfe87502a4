#include "app/status/application_image.h"

#include <cmath>

namespace app {

bool ApplicationImageGate::admits(const ApplicationImage& image, bool force) {
    if (!force && !isWorthwhile(image)) {
        return false;
    }
    last_ = image;
    lastUpdate_ = clock_.monotonic();
    return true;
}

bool ApplicationImageGate::isWorthwhile(const ApplicationImage& image) const {
    constexpr double leap = 0.2;
    constexpr double step = 0.01;
    constexpr platform::Seconds interval = 0.5;
    if (image.upperCount != last_.upperCount || image.lowerCount != last_.lowerCount) {
        return true;
    }
    const double difference = std::abs(image.fraction - last_.fraction);
    const bool isRecent = lastUpdate_ && clock_.monotonic() - *lastUpdate_ <= interval;
    return difference > leap || (difference > step && !isRecent);
}

}  // namespace app
