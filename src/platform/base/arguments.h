#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <optional>

namespace platform {

/// What a command line says.
struct ParsedArguments {
    /// From `-KEY VALUE`, for `UserDefaults::setArguments`.
    QVariantMap defaults;
    /// All else in its order, with the options that begin with two dashes.
    QStringList rest;
    /// The first element of `rest` that stood behind "--" and is no option whatever it looks like.
    qsizetype verbatimStart = 0;
};

/// Takes the arguments without the program's name. What begins with one dash is a key and takes
/// the next argument as its value, whatever that is; of equal keys the last counts. Behind "--"
/// there are no keys, and a last `-KEY` without a value is left in `rest`.
[[nodiscard]] ParsedArguments parseArguments(const QStringList& arguments);

/// A value as people write it where one has to be typed: a property-list element such as
/// "<array>…</array>", else the text itself (which reads as a bool or a number where one is asked
/// for). Nothing: it begins like an element and is none.
[[nodiscard]] std::optional<QVariant> valueFromText(const QString& text);

}  // namespace platform
