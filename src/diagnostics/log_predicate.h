#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <memory>
#include <variant>

namespace diagnostics {

/// Which entries are wanted, in a small language:
///
///     (eventType == "logEvent") && !(subsystem BEGINSWITH "com.") || eventMessage CONTAINS "x"
///
/// Fields by the names of the entries' members; `==`, `!=`, `CONTAINS`, `BEGINSWITH` and `ENDSWITH`
/// compare a field with a text between double quotes, in which a backslash takes the next character
/// as it is; with `[c]` behind them they take capital and small letters of ASCII for the same. `!`
/// binds closest, then `&&`, then `||`; AND, OR and NOT are the same in words. A field that an
/// entry does not have is empty.
class LogPredicate {
public:
    /// The value of a field, in UTF-8.
    using Field = std::function<QByteArray(QByteArrayView name)>;
    struct Problem {
        QString text;
        qsizetype column = 0;  ///< From 1, in bytes.
    };

    /// All of at most 64 KiB and 100 levels.
    [[nodiscard]] static std::variant<LogPredicate, Problem> parsed(const QByteArray& text);

    [[nodiscard]] bool accepts(const Field& field) const { return test_(field); }

    using Test = std::function<bool(const Field&)>;

private:
    explicit LogPredicate(Test test) : test_(std::move(test)) {}

    Test test_;
};

}  // namespace diagnostics
