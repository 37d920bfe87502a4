#pragma once

#include <QDBusArgument>
#include <QMetaType>
#include <QString>

namespace scripting {

/// Two texts as one value of the bus.
struct TextPair {
    QString first, second;
};

inline QDBusArgument& operator<<(QDBusArgument& argument, const TextPair& pair) {
    argument.beginStructure();
    argument << pair.first << pair.second;
    argument.endStructure();
    return argument;
}

inline const QDBusArgument& operator>>(const QDBusArgument& argument, TextPair& pair) {
    argument.beginStructure();
    argument >> pair.first >> pair.second;
    argument.endStructure();
    return argument;
}

}  // namespace scripting

Q_DECLARE_METATYPE(scripting::TextPair)
