#include "diagnostics/log_arguments.h"

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace diagnostics {

namespace {

using Action = LogRequest::Action;
using Style = LogRequest::Style;

/// `1h`, `2d`, `30m`, `10s`.
std::optional<std::int64_t> parsedSpan(const QString& text) {
    static constexpr std::array<std::pair<char16_t, std::int64_t>, 4> units{
        {{u's', 1}, {u'm', 60}, {u'h', 60 * 60}, {u'd', 24 * 60 * 60}}};
    constexpr std::int64_t mostUnits = 1'000'000;
    const auto* unit = std::find_if(units.begin(), units.end(),
                                    [&](const auto& known) { return text.endsWith(known.first); });
    bool isNumber = false;
    const std::int64_t count =
        QStringView(text).first(std::max<qsizetype>(text.size() - 1, 0)).toLongLong(&isNumber);
    if (unit == units.end() || !isNumber || count < 0 || count > mostUnits)
        return std::nullopt;
    return count * unit->second;
}

class ArgumentParser {
public:
    LogRequest parse(QStringList arguments) {
        if (arguments.isEmpty())
            return refused(u"\"show\" or \"stream\" is missing"_s);
        if (arguments.contains(u"--help"_s) || arguments.first() == u"help")
            return request_;
        const QString verb = arguments.takeFirst();
        if (verb == u"--version") {
            request_.action = Action::Version;
            return request_;
        }
        if (verb != u"show" && verb != u"stream")
            return refused(u"\"%1\" is neither \"show\" nor \"stream\""_s.arg(verb));
        request_.action = verb == u"show" ? Action::Show : Action::Stream;
        while (!arguments.isEmpty() && request_.problem.isEmpty())
            takeOption(arguments);
        return request_;
    }

private:
    void takeOption(QStringList& arguments) {
        QString option = arguments.takeFirst();
        const bool shows = request_.action == Action::Show;
        if (shows && (option == u"--info" || option == u"--debug")) {
            const auto detail = option == u"--info" ? LogDetail::Info : LogDetail::Debug;
            request_.detail = std::max(request_.detail, detail);
            return;
        }
        const bool takesValue = option == u"--style" || option == u"--predicate" ||
                                option == (shows ? u"--last" : u"--level");
        if (!takesValue)
            refused(u"\"%1\" is no option here"_s.arg(option));
        else if (arguments.isEmpty())
            refused(u"a value is missing behind %1"_s.arg(option));
        else
            takeValue(option, arguments.takeFirst());
    }

    void takeValue(const QString& option, const QString& value) {
        bool isUnderstood = true;
        if (option == u"--style")
            isUnderstood = takeStyle(value);
        else if (option == u"--level")
            isUnderstood = takeLevel(value);
        else if (option == u"--last")
            isUnderstood = (request_.last = parsedSpan(value)).has_value();
        else
            return takePredicate(value);
        if (!isUnderstood)
            refused(u"%1 does not take \"%2\""_s.arg(option, value));
    }

    bool takeStyle(const QString& value) {
        request_.style = value == u"json" ? Style::Json : Style::Readable;
        return value == u"json" || value == u"default";
    }

    bool takeLevel(const QString& value) {
        request_.detail = value == u"debug"  ? LogDetail::Debug
                          : value == u"info" ? LogDetail::Info
                                             : LogDetail::Default;
        return request_.detail != LogDetail::Default || value == u"default";
    }

    void takePredicate(const QString& value) {
        auto predicate = LogPredicate::parsed(value.toUtf8());
        if (const auto* problem = std::get_if<LogPredicate::Problem>(&predicate)) {
            refused(u"the predicate is not understood at its column %1: %2"_s.arg(problem->column)
                        .arg(problem->text));
            return;
        }
        request_.predicateText = value;
        request_.predicate = std::get<LogPredicate>(std::move(predicate));
    }

    const LogRequest& refused(const QString& why) {
        request_.problem = why;
        return request_;
    }

    LogRequest request_;
};

}  // namespace

bool LogRequest::wants(const structured::FlatObject& line) const {
    const QByteArrayView type = line.value("messageType");
    if ((type == "\"Debug\"" && detail != LogDetail::Debug) ||
        (type == "\"Info\"" && detail == LogDetail::Default))
        return false;
    return !predicate || predicate->accepts([&](QByteArrayView name) {
        return structured::decodedJsonValue(line.value(name));
    });
}

LogRequest parsedLogArguments(const QStringList& arguments) {
    return ArgumentParser().parse(arguments);
}

const char* logUsage() {
    return "Usage: orlop-log show [--last SPAN] [--info] [--debug] [OPTION]...\n"
           "       orlop-log stream [--level default|info|debug] [OPTION]...\n"
           "Shows what Orlop's programs wrote to their log, or what they write from now on.\n"
           "\n"
           "  --last SPAN        how far back, such as 30m, 1h or 2d; without it, all there is\n"
           "  --info, --debug    lines of these levels too; debug lines are written only while\n"
           "                     debug logging is switched on\n"
           "  --level LEVEL      the same for stream\n"
           "  --style STYLE      default, for reading, or json\n"
           "  --predicate TEXT   only what this is true of, such as\n"
           "                     'messageType == \"Error\" && !(category == \"ILR\")'\n"
           "  --help             show this text\n"
           "  --version          show the version\n";
}

}  // namespace diagnostics
