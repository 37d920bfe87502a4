#include "platform/base/log_record.h"

#include <time.h>
#include <unistd.h>

#include <QFile>
#include <array>
#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

constexpr qsizetype longestMessage = 16LL * 1024;
constexpr std::int64_t perSecond = 1'000'000;

QByteArray quoted(const QString& text) {
    QByteArray out = "\"";
    for (const char byte : text.toUtf8()) {
        const auto code = static_cast<unsigned char>(byte);
        if (byte == '"' || byte == '\\') {
            out += '\\';
            out += byte;
        } else if (byte == '\n') {
            out += "\\n";
        } else if (code < 0x20) {
            out += "\\u" + QByteArray::number(code, 16).rightJustified(4, '0');
        } else {
            out += byte;
        }
    }
    return out + '"';
}

QByteArray member(const char* key, const QByteArray& value) {
    return QByteArray(",\"") + key + "\":" + value;
}

}  // namespace

LogOrigin ownLogOrigin() {
    static const QString path = QFile::symLinkTarget(u"/proc/self/exe"_s);
    return {getpid(), path};
}

std::int64_t logClock() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return now.tv_sec * perSecond + now.tv_nsec / 1000;
}

QByteArray logTimestamp(std::int64_t microseconds) {
    const time_t seconds = microseconds / perSecond;
    tm parts{};
    gmtime_r(&seconds, &parts);
    std::array<char, 64> text{};
    const std::size_t length = strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts);
    std::snprintf(text.data() + length, text.size() - length, ".%06d+0000",
                  static_cast<int>(microseconds % perSecond));
    return text.data();
}

QString logCategory(const QString& line) {
    static const QString debugPrefix = u"[Debug] "_s;
    const QStringView rest =
        QStringView(line).sliced(line.startsWith(debugPrefix) ? debugPrefix.size() : 0);
    const qsizetype end = rest.startsWith(u'[') ? rest.indexOf(u"] ") : -1;
    constexpr qsizetype longestCategory = 64;
    return end > 0 && end <= longestCategory ? rest.sliced(1, end - 1).toString() : QString();
}

QByteArray logMessageType(LogLevel level) {
    switch (level) {
        case LogLevel::Debug:
            return "Debug";
        case LogLevel::Info:
            return "Default";
        case LogLevel::Warning:
            return "Error";
        case LogLevel::Error:
            return "Fault";
    }
    return "Default";
}

QByteArray encodedLogRecord(const LogRecord& record, const LogOrigin& origin) {
    const QString message = record.line.size() <= longestMessage
                                ? record.line
                                : record.line.first(longestMessage) + u'…';
    const QString category = logCategory(record.line);
    const QString sender =
        category.isEmpty() ? origin.path.sliced(origin.path.lastIndexOf(u'/') + 1) : category;
    return "{\"timestamp\":\"" + logTimestamp(record.microseconds) + '"' +
           member("eventType", "\"logEvent\"") +
           member("messageType", '"' + logMessageType(record.level) + '"') +
           member("subsystem", "\"com.tarnworks.Orlop\"") + member("category", quoted(category)) +
           member("eventMessage", quoted(message)) +
           member("processID", QByteArray::number(origin.processID)) +
           member("processImagePath", quoted(origin.path)) +
           member("senderImagePath", quoted(u"/Orlop/"_s + sender)) + "}\n";
}

}  // namespace platform
