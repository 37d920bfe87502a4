#include "diagnostics/log_printer.h"

#include <QDateTime>

#include "diagnostics/log_entry.h"

using namespace Qt::Literals::StringLiterals;

namespace diagnostics {

namespace {

using structured::FlatObject;

constexpr qsizetype gathered = 256LL * 1024;
constexpr const char* faint = "\x1b[2m";
constexpr const char* red = "\x1b[31m";
constexpr const char* plain = "\x1b[0m";

/// Names from servers stand in lines: none of them steers the terminal.
QByteArray printable(QByteArrayView written) {
    QString text = QString::fromUtf8(structured::decodedJsonValue(written));
    for (QChar& c : text) {
        if (c != u'\n' && c.category() == QChar::Other_Control)
            c = QChar::ReplacementCharacter;
    }
    return text.replace(u'\n', u"\n    "_s).toUtf8();
}

QByteArray lastComponent(const QByteArray& path) {
    return path.sliced(path.lastIndexOf('/') + 1);
}

QByteArray localTime(QByteArrayView written) {
    const auto time = parsedLogTimestamp(structured::decodedJsonValue(written));
    constexpr std::int64_t microsecondsInMillisecond = 1000;
    return time ? QDateTime::fromMSecsSinceEpoch(*time / microsecondsInMillisecond)
                      .toString(u"yyyy-MM-dd HH:mm:ss.zzz")
                      .toLatin1()
                : QByteArray("?");
}

}  // namespace

LogPrinter::LogPrinter(LogRequest::Style style, bool hasColors, Write write)
    : style_(style), hasColors_(hasColors), write_(std::move(write)) {}

void LogPrinter::begin(const QByteArray& header) {
    if (style_ != LogRequest::Style::Json)
        return;
    out_ += header;
    out_ += '[';
}

bool LogPrinter::add(const FlatObject& line) {
    if (style_ == LogRequest::Style::Json)
        addJson(line);
    else
        addReadable(line);
    isFirst_ = false;
    return out_.size() < gathered ? isRead_ : flush();
}

/// A brace at the beginning of a line closes an entry: whoever reads cuts there.
void LogPrinter::addJson(const FlatObject& line) {
    out_ += isFirst_ ? "{" : ",{";
    bool isFirstMember = true;
    for (const FlatObject::Member& member : line.members()) {
        out_ += isFirstMember ? "\n  \"" : ",\n  \"";
        out_ += member.key;
        out_ += "\" : ";
        out_ += member.value;
        isFirstMember = false;
    }
    out_ += "\n}";
}

void LogPrinter::addReadable(const FlatObject& line) {
    const auto colored = [&](const char* color, const QByteArray& text) {
        return hasColors_ ? color + text + plain : text;
    };
    const QByteArrayView type = line.value("messageType");
    const QByteArray message = printable(line.value("eventMessage"));
    const bool isProblem = type == "\"Error\"" || type == "\"Fault\"";
    out_ += colored(faint, localTime(line.value("timestamp")) + ' ' +
                               lastComponent(printable(line.value("processImagePath"))) + '[' +
                               printable(line.value("processID")) + "] ");
    out_ += isProblem             ? colored(red, message)
            : type == "\"Debug\"" ? colored(faint, message)
                                  : message;
    out_ += '\n';
}

bool LogPrinter::flush() {
    if (isRead_ && !out_.isEmpty())
        isRead_ = write_(out_);
    out_.clear();
    return isRead_;
}

bool LogPrinter::end() {
    if (style_ == LogRequest::Style::Json)
        out_ += isFirst_ ? "\n]\n" : "]\n";
    return flush();
}

}  // namespace diagnostics
