#include <sys/syslog.h>
#include <sys/uio.h>
#define SD_JOURNAL_SUPPRESS_LOCATION
#include <systemd/sd-journal.h>

#include <QByteArray>
#include <QFile>
#include <array>

#include "platform/base/log_writer.h"

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

void writeToJournal(const LogRecord& record) {
    const std::array<QByteArray, 5> fields{
        "SYSLOG_IDENTIFIER=Orlop", "PRIORITY=" + QByteArray::number(priority(record.level)),
        "MESSAGE=" + record.line.toUtf8(), "ORLOP_CATEGORY=" + logCategory(record.line).toUtf8(),
        "ORLOP_TIMESTAMP=" + logTimestamp(record.microseconds)};
    std::array<iovec, fields.size()> parts{};
    for (std::size_t i = 0; i < fields.size(); ++i)
        parts[i] = {const_cast<char*>(fields[i].constData()),
                    static_cast<std::size_t>(fields[i].size())};
    sd_journal_sendv(parts.data(), static_cast<int>(parts.size()));
}

}  // namespace

LogOutput journalOutput() {
    if (!QFile::exists(u"/run/systemd/journal/socket"_s))
        return {};
    return writeToJournal;
}

}  // namespace platform
