#pragma once

#include <QByteArray>
#include <QString>
#include <ostream>

/// Lets GoogleTest show these types as text instead of bytes; it looks in the types' own namespace.
inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QByteArray& bytes, std::ostream* stream) {
    *stream << '"' << bytes.toStdString() << '"';
}
