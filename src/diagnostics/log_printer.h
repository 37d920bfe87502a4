#pragma once

#include <QByteArray>
#include <functional>

#include "diagnostics/log_arguments.h"

namespace diagnostics {

/// Turns entries into the output of `orlop-log`.
class LogPrinter {
public:
    /// False: nobody reads any more.
    using Write = std::function<bool(QByteArrayView bytes)>;

    LogPrinter(LogRequest::Style style, bool hasColors, Write write);

    /// What stands before all entries.
    void begin(const QByteArray& header);
    /// False: nobody reads any more.
    bool add(const structured::FlatObject& line);
    /// Hands on what was gathered. False: nobody reads any more.
    bool flush();
    /// What stands behind all entries. False: nobody read it.
    bool end();

private:
    void addJson(const structured::FlatObject& line);
    void addReadable(const structured::FlatObject& line);

    const LogRequest::Style style_;
    const bool hasColors_;
    const Write write_;
    QByteArray out_;
    bool isFirst_ = true;
    bool isRead_ = true;
};

}  // namespace diagnostics
