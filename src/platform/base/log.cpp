#include "platform/base/log.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <vector>

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

std::atomic<bool> debugLogEnabled = false;

/// Addresses may hold passwords, and whoever logs one does not think of that.
QString withoutPasswords(QString line) {
    const QString beginning = u"://"_s;
    for (qsizetype at = line.indexOf(beginning); at >= 0; at = line.indexOf(beginning, at)) {
        at += beginning.size();
        qsizetype end = at;
        while (end < line.size() && !QStringView(u" \t\r\n/?#\"<>").contains(line[end]))
            ++end;
        const QStringView authority = QStringView(line).sliced(at, end - at);
        const qsizetype colon = authority.indexOf(u':');
        const qsizetype host = authority.lastIndexOf(u'@');
        if (colon >= 0 && host > colon)
            line.replace(at + colon + 1, host - colon - 1, u"..."_s);
    }
    return line;
}

}  // namespace

void log(const QString& line, LogLevel level) {
    const QString shown = withoutPasswords(line);
    Sinks& to = sinks();
    const std::lock_guard guard(to.lock);
    for (const auto& sink : to.all)
        sink->write(level, shown);
}

void debugLog(const std::function<QString()>& line) {
    if (debugLogEnabled)
        log(u"[Debug] "_s + line(), LogLevel::Debug);
}

bool isDebugLogEnabled() {
    return debugLogEnabled;
}

void setDebugLogEnabled(bool enabled) {
    debugLogEnabled = enabled;
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
