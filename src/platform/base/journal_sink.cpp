#include <sys/syslog.h>
#include <sys/uio.h>
#define SD_JOURNAL_SUPPRESS_LOCATION
#include <systemd/sd-journal.h>

#include <QByteArray>
#include <QFile>
#include <array>

#include "platform/base/log.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

int priority(LogLevel level) {
    switch (level) {
        case LogLevel::Debug:
            return LOG_DEBUG;
        case LogLevel::Info:
            return LOG_INFO;
        case LogLevel::Warning:
            return LOG_WARNING;
        case LogLevel::Error:
            return LOG_ERR;
    }
    return LOG_INFO;
}

class JournalSink final : public LogSink {
public:
    void write(LogLevel level, const QString& line) override {
        const std::array<QByteArray, 3> fields{"SYSLOG_IDENTIFIER=Orlop",
                                               "PRIORITY=" + QByteArray::number(priority(level)),
                                               "MESSAGE=" + line.toUtf8()};
        std::array<iovec, fields.size()> parts{};
        for (std::size_t i = 0; i < fields.size(); ++i)
            parts[i] = {const_cast<char*>(fields[i].constData()),
                        static_cast<std::size_t>(fields[i].size())};
        sd_journal_sendv(parts.data(), static_cast<int>(parts.size()));
    }
};

}  // namespace

std::shared_ptr<LogSink> makeJournalSink() {
    if (!QFile::exists(u"/run/systemd/journal/socket"_s))
        return nullptr;
    return std::make_shared<JournalSink>();
}

}  // namespace platform
