#pragma once

#include <QByteArray>
#include <QStringList>
#include <cstdint>
#include <optional>

#include "diagnostics/log_predicate.h"
#include "structured/json/flat_object.h"

namespace diagnostics {

/// How much is shown; what stands first is shown always.
enum class LogDetail { Default, Info, Debug };

/// What `orlop-log` was asked for.
struct LogRequest {
    enum class Action { Show, Stream, Help, Version };
    enum class Style { Readable, Json };

    Action action = Action::Help;
    Style style = Style::Readable;
    LogDetail detail = LogDetail::Default;
    /// How far back, in seconds. Nothing: all that there is.
    std::optional<std::int64_t> last;
    /// The text of the predicate; null: there is none.
    QString predicateText;
    std::optional<LogPredicate> predicate;
    /// Why the arguments are refused; empty: they are not.
    QString problem;

    /// Whether an entry is wanted; how old it is does not count.
    [[nodiscard]] bool wants(const structured::FlatObject& line) const;
};

/// `arguments` without the program's name.
[[nodiscard]] LogRequest parsedLogArguments(const QStringList& arguments);

/// What `--help` shows.
[[nodiscard]] const char* logUsage();

}  // namespace diagnostics
