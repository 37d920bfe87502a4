#include "platform/base/log.h"

#include <mutex>
#include <vector>

#include "platform/base/log_redaction.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

struct Sinks {
    std::mutex lock;  ///< Guards all; held while they write, so that lines keep their order.
    std::vector<std::shared_ptr<LogSink>> all;
};

Sinks& sinks() {
    static Sinks instance;
    return instance;
}

}  // namespace

void log(const QString& line, LogLevel level) {
    const QString shown = withoutSecrets(line);
    Sinks& to = sinks();
    const std::lock_guard guard(to.lock);
    for (const auto& sink : to.all)
        sink->write(level, shown);
}

void writeDebugLine(const QString& line) {
    log(u"[Debug] "_s + line, LogLevel::Debug);
}

void setDebugLogEnabled(bool enabled) {
    detail::isDebugLogEnabled = enabled;
}

void addLogSink(std::shared_ptr<LogSink> sink) {
    if (!sink)
        return;
    Sinks& to = sinks();
    const std::lock_guard guard(to.lock);
    to.all.push_back(std::move(sink));
}

void removeLogSink(const std::shared_ptr<LogSink>& sink) {
    Sinks& from = sinks();
    const std::lock_guard guard(from.lock);
    std::erase(from.all, sink);
}

}  // namespace platform
