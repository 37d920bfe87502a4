// Any bytes as a store of the log, and as a predicate: every entry that is found in it is printed
// in the shape from which the stream cuts as many, and nothing is read beyond its end.
#include "diagnostics/json_log_stream.h"
#include "diagnostics/log_lines.h"
#include "diagnostics/log_predicate.h"
#include "diagnostics/log_printer.h"
#include "fuzz_target.h"

namespace {

using namespace diagnostics;

QByteArray printed(const QByteArray& store, LogRequest::Style style, std::size_t& count) {
    QByteArray text;
    LogPrinter printer(style, true, [&](QByteArrayView bytes) {
        text += bytes;
        return true;
    });
    printer.begin({});
    takeLines(store, [&](const structured::FlatObject& line) {
        ++count;
        return printer.add(line);
    });
    printer.end();
    return text;
}

}  // namespace

void checkInput(const QByteArray& input) {
    std::size_t count = 0, shown = 0, cut = 0;
    const QByteArray text = printed(input, LogRequest::Style::Json, count);
    printed(input, LogRequest::Style::Readable, shown);
    JSONLogCutter cutter([&](const LogEntries& entries) {
        cut += entries.size();
        return true;
    });
    cutter.append(text);
    require(count == cut && count == shown);
    const auto predicate = LogPredicate::parsed(input);
    if (const auto* accepted = std::get_if<LogPredicate>(&predicate))
        static_cast<void>(
            accepted->accepts([](QByteArrayView name) { return name.toByteArray(); }));
    else
        require(!std::get<LogPredicate::Problem>(predicate).text.isEmpty());
}
