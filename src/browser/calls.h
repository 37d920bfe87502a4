#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariantMap>
#include <variant>

namespace browser {

/// What the extension asks for.
struct Call {
    enum class Kind { HandOver, HandOverAll, Withdraw, Filter, Show, Subscribe };

    /// By which the extension finds the answer.
    qint64 number = 0;
    Kind kind = Kind::Show;
    /// One for a hand-over, several for many: what `HandOver` takes on the bus, without a deadline.
    QList<QVariantMap> requests;
    /// Of the hand-over that is to be withdrawn.
    QString id;
    /// Milliseconds until the browser keeps its download.
    int patience = 0;
};

/// Longest time that a browser's download is held for an answer, in milliseconds.
inline constexpr int longestPatience = 2000;
/// Of hand-overs in one call.
inline constexpr qsizetype mostRequests = 1000;

struct CallProblem {
    /// 0: not even that could be read.
    qint64 number = 0;
    /// English, for the browser's console; quotes nothing but names of fields.
    QString text;
};

/// Reads a message from the extension strictly: every field that is not known, missing, of another
/// type, too long or out of range is refused. Any thread.
[[nodiscard]] std::variant<Call, CallProblem> readCall(const QByteArray& message);

}  // namespace browser
