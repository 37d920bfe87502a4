#include "diagnostics/log_command.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "diagnostics/log_lines.h"
#include "diagnostics/log_printer.h"
#include "diagnostics/log_tail.h"
#include "platform/base/log_record.h"

namespace diagnostics {

namespace {

using structured::FlatObject;

bool writeAll(int output, QByteArrayView bytes) {
    while (!bytes.isEmpty()) {
        const ssize_t count = write(output, bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        bytes = bytes.sliced(count);
    }
    return true;
}

/// Lines older than the store keeps may still be in it.
QByteArray firstMoment(const LogRequest& request) {
    constexpr std::int64_t perSecond = 1'000'000;
    constexpr std::int64_t month = 30LL * 24 * 60 * 60;
    const std::int64_t span = std::min(request.last.value_or(month), month);
    return platform::logTimestamp(platform::logClock() - span * perSecond);
}

bool show(const LogRequest& request, const QString& folder, LogPrinter& printer) {
    printer.begin({});
    bool isRead = true;
    takeStoredLines(folder, firstMoment(request), [&](const FlatObject& line) {
        if (request.wants(line))
            isRead = printer.add(line);
        return isRead;
    });
    return isRead && printer.end();
}

bool stream(const LogRequest& request, const QString& folder, int output, LogPrinter& printer) {
    LogTail tail(folder);
    printer.begin("Filtering the log data using \"" + request.predicateText.toUtf8() + "\"\n");
    do {
        tail.takeNew([&](const FlatObject& line) {
            if (request.wants(line))
                printer.add(line);
            return true;
        });
    } while (printer.flush() && tail.wait(output));
    return true;
}

}  // namespace

int runLogCommand(const LogRequest& request, const QString& folder, int output, bool hasColors) {
    LogPrinter printer(request.style, hasColors,
                       [output](QByteArrayView bytes) { return writeAll(output, bytes); });
    const bool isWritten = request.action == LogRequest::Action::Show
                               ? show(request, folder, printer)
                               : stream(request, folder, output, printer);
    return isWritten ? 0 : 1;
}

}  // namespace diagnostics
