#include "browser/calls.h"

#include <array>

#include "browser/fields.h"
#include "structured/json/json_reader.h"

namespace browser {

using namespace Qt::Literals::StringLiterals;

namespace {

using Kind = Field::Kind;

constexpr qint64 longestAddress = 32768, longestLine = 65536, largestBody = 512LL * 1024;
/// What a browser can count exactly.
constexpr qint64 largestNumber = (qint64{1} << 53) - 1;

constexpr std::array callFields{
    Field{"call", Kind::Integer, largestNumber, true}, Field{"do", Kind::Line, 32, true},
    Field{"within", Kind::Integer, longestPatience},   Field{"request", Kind::Object},
    Field{"requests", Kind::List, mostRequests},       Field{"id", Kind::Id}};

constexpr std::array requestFields{Field{"id", Kind::Id, 0, true},
                                   Field{"address", Kind::Address, longestAddress, true},
                                   Field{"finalAddress", Kind::Address, longestAddress},
                                   Field{"referrer", Kind::Address, longestAddress},
                                   Field{"cookies", Kind::Line, longestLine},
                                   Field{"userAgent", Kind::Line, 2048},
                                   Field{"method", Kind::Method},
                                   Field{"body", Kind::Base64, largestBody},
                                   Field{"contentType", Kind::Line, 1024},
                                   Field{"name", Kind::Line, 1024},
                                   Field{"size", Kind::Integer, largestNumber},
                                   Field{"page", Kind::Address, longestAddress},
                                   Field{"private", Kind::Bool}};

struct Action {
    const char* name;
    Call::Kind kind;
    /// Beside "call" and "do".
    std::array<const char*, 2> fields;
};
constexpr std::array actions{
    Action{"handOver", Call::Kind::HandOver, {"request", "within"}},
    Action{"handOverAll", Call::Kind::HandOverAll, {"requests", "within"}},
    Action{"withdraw", Call::Kind::Withdraw, {"id", nullptr}},
    Action{"filter", Call::Kind::Filter, {nullptr, nullptr}},
    Action{"show", Call::Kind::Show, {nullptr, nullptr}},
    Action{"subscribe", Call::Kind::Subscribe, {nullptr, nullptr}},
};

/// The fields of the action must be there, and no others.
std::optional<QString> problemWithAction(const QVariantMap& message, const Action& action) {
    qsizetype expected = 2;
    for (const char* name : action.fields) {
        if (name == nullptr)
            continue;
        ++expected;
        if (!message.contains(QString::fromLatin1(name)))
            return u"\"%1\" is missing"_s.arg(QLatin1StringView(name));
    }
    if (message.size() != expected)
        return u"a field is not of this action"_s;
    return std::nullopt;
}

std::optional<QString> addRequest(const QVariant& value, Call& call) {
    if (value.typeId() != QMetaType::QVariantMap)
        return u"a request is not an object"_s;
    QVariantMap request = value.toMap();
    if (const auto problem = problemWithFields(request, requestFields))
        return problem;
    if (const auto body = request.find(u"body"_s); body != request.end()) {
        if (request.value(u"method"_s) != u"POST"_s)
            return u"only a POST has a \"body\""_s;
        *body = *decodedBase64(body->toString());
    }
    call.requests.append(request);
    return std::nullopt;
}

std::optional<QString> addRequests(const QVariantMap& message, Call& call) {
    if (call.kind == Call::Kind::HandOver)
        return addRequest(message.value(u"request"_s), call);
    for (const QVariant& request : message.value(u"requests"_s).toList())
        if (const auto problem = addRequest(request, call))
            return problem;
    return std::nullopt;
}

}  // namespace

std::variant<Call, CallProblem> readCall(const QByteArray& message) {
    const structured::JsonResult read = structured::readJson(message);
    if (read.value.typeId() != QMetaType::QVariantMap)
        return CallProblem{0, u"not a JSON object"_s};
    const QVariantMap object = read.value.toMap();
    const QVariant number = object.value(u"call"_s);
    CallProblem problem{number.typeId() == QMetaType::LongLong ? number.toLongLong() : 0, {}};
    if (const auto text = problemWithFields(object, callFields)) {
        problem.text = *text;
        return problem;
    }
    const QString name = object.value(u"do"_s).toString();
    const auto* const action = std::ranges::find_if(
        actions, [&](const Action& one) { return name == QLatin1StringView(one.name); });
    if (action == actions.end()) {
        problem.text = u"\"do\" is not known"_s;
        return problem;
    }
    Call call{number.toLongLong(),
              action->kind,
              {},
              object.value(u"id"_s).toString(),
              object.value(u"within"_s).toInt()};
    if (const auto text = problemWithAction(object, *action)) {
        problem.text = *text;
        return problem;
    }
    if (const auto text = addRequests(object, call)) {
        problem.text = *text;
        return problem;
    }
    return call;
}

}  // namespace browser
