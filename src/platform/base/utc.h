#pragma once

#include <QtGlobal>
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
#include <QTimeZone>
#else
#include <Qt>
#endif

namespace platform {

/// Universal time as the constructors of QDateTime want it, which differs between releases of Qt.
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
inline constexpr QTimeZone::Initialization utc = QTimeZone::UTC;
#else
inline constexpr Qt::TimeSpec utc = Qt::UTC;
#endif

}  // namespace platform
