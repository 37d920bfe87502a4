#pragma once

#include <QStringList>
#include <algorithm>
#include <memory>
#include <mutex>

#include "platform/base/log.h"

namespace support {

/// Keeps what is logged while it lives, debug lines included. Any thread.
class LogRecorder {
public:
    LogRecorder() : sink_(std::make_shared<Sink>()) {
        platform::addLogSink(sink_);
        platform::setDebugLogEnabled(true);
    }
    ~LogRecorder() {
        platform::setDebugLogEnabled(false);
        platform::removeLogSink(sink_);
    }
    LogRecorder(const LogRecorder&) = delete;
    LogRecorder& operator=(const LogRecorder&) = delete;

    [[nodiscard]] QStringList lines() const {
        const std::scoped_lock guard(sink_->lock);
        return sink_->lines;
    }
    [[nodiscard]] bool contains(const QString& text) const { return count(text) > 0; }
    /// How many lines hold the text.
    [[nodiscard]] std::ptrdiff_t count(const QString& text) const {
        const std::scoped_lock guard(sink_->lock);
        return std::ranges::count_if(sink_->lines,
                                     [&](const QString& line) { return line.contains(text); });
    }

private:
    struct Sink : platform::LogSink {
        std::mutex lock;  ///< Guards lines.
        QStringList lines;
        void write(platform::LogLevel, const QString& line) override {
            const std::scoped_lock guard(lock);
            lines.append(line);
        }
    };
    std::shared_ptr<Sink> sink_;
};

}  // namespace support
