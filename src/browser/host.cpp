#include "browser/host.h"

#include <unistd.h>

#include <array>
#include <cerrno>

#include "structured/json/json_writer.h"

namespace browser {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Calls that may wait for an answer at once; an extension that behaves never has so many.
constexpr int mostCalls = 256;
constexpr int plainTimeout = 25'000;

QString wordOf(Outcome::Kind kind) {
    switch (kind) {
        case Outcome::Kind::Ok:
            return u"ok"_s;
        case Outcome::Kind::Known:
            return u"known"_s;
        case Outcome::Kind::Refused:
            return u"refused"_s;
        case Outcome::Kind::Timeout:
            return u"timeout"_s;
        case Outcome::Kind::Unreachable:
            return u"unreachable"_s;
    }
    return {};
}

QVariantMap answerOf(const Outcome& outcome) {
    return {{u"outcome"_s, wordOf(outcome.kind)}, {u"text"_s, outcome.text.left(1000)}};
}

}  // namespace

Host::Host(OrlopBus& bus, int input, int output)
    : bus_(bus), input_(input), output_(output), notifier_(input, QSocketNotifier::Read) {
    connect(&notifier_, &QSocketNotifier::activated, this, &Host::read);
    connect(&bus_, &OrlopBus::runningChanged, this, [this](std::optional<quint32> count) {
        if (isSubscribed_)
            write({{u"event"_s, u"running"_s},
                   {u"here"_s, count.has_value()},
                   {u"count"_s, qint64{count.value_or(0)}}});
    });
}

void Host::read() {
    std::array<char, 65536> block{};
    const ssize_t size = ::read(input_, block.data(), block.size());
    if (size < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (size <= 0) {
        notifier_.setEnabled(false);
        Q_EMIT ended(size < 0);
        return;
    }
    cutter_.append(QByteArrayView(block.data(), size));
    while (const std::optional<QByteArray> message = cutter_.next()) {
        const std::variant<Call, CallProblem> read = readCall(*message);
        if (const auto* call = std::get_if<Call>(&read))
            take(*call);
        else
            answerProblem(std::get<CallProblem>(read).number, u"invalid"_s,
                          std::get<CallProblem>(read).text);
    }
    if (cutter_.isBroken()) {
        answerProblem(0, u"invalid"_s, u"a message is empty or longer than 1 MiB"_s);
        notifier_.setEnabled(false);
        Q_EMIT ended(true);
    }
}

void Host::take(const Call& call) {
    if (calls_ >= mostCalls) {
        answerProblem(call.number, u"busy"_s, u"too many calls wait for an answer"_s);
        return;
    }
    ++calls_;
    switch (call.kind) {
        case Call::Kind::HandOver:
        case Call::Kind::HandOverAll:
            handOver(call);
            break;
        case Call::Kind::Withdraw:
            takeBack(call);
            break;
        case Call::Kind::Filter:
            askText(call, u"BrowserFilter"_s, u"filter"_s);
            break;
        case Call::Kind::Show:
            askText(call, u"Show"_s, {});
            break;
        case Call::Kind::Subscribe:
            subscribe(call);
            break;
    }
}

void Host::handOver(const Call& call) {
    const bool isMany = call.kind == Call::Kind::HandOverAll;
    if (call.requests.isEmpty()) {
        answer(call, {{u"outcomes"_s, QVariantList()}});
        return;
    }
    auto* const attempt = new HandOver(bus_, call.requests, isMany, call.patience, this);
    connect(attempt, &HandOver::ended, this, [this, call, isMany](const QList<Outcome>& outcomes) {
        QVariantList answers;
        for (const Outcome& outcome : outcomes)
            answers.append(answerOf(outcome));
        answer(call, isMany ? QVariantMap{{u"outcomes"_s, answers}} : answers.first().toMap());
    });
}

void Host::askText(const Call& call, const QString& method, const QString& name) {
    bus_.call(method, {}, plainTimeout, this, [this, call, name](const BusAnswer& heard) {
        if (!heard.error.isEmpty())
            answerUnreachable(call, heard);
        else if (name.isEmpty())
            answer(call, {});
        else
            answer(call, {{name, heard.values.value(0).toString()}});
    });
}

void Host::takeBack(const Call& call) {
    withdraw(bus_, call.id, this, [this, call](const BusAnswer& heard) {
        if (heard.error.isEmpty())
            answer(call, {{u"gone"_s, heard.values.value(0).toBool()}});
        else
            answerUnreachable(call, heard);
    });
}

void Host::subscribe(const Call& call) {
    isSubscribed_ = true;
    answer(call, {});
    bus_.follow();
}

void Host::answer(const Call& call, QVariantMap answer) {
    --calls_;
    answer.insert(u"call"_s, call.number);
    write(answer);
}

void Host::answerUnreachable(const Call& call, const BusAnswer& heard) {
    answer(call, {{u"error"_s, u"unreachable"_s}, {u"text"_s, heard.error}});
}

void Host::answerProblem(qint64 number, const QString& code, const QString& text) {
    write({{u"call"_s, number}, {u"error"_s, code}, {u"text"_s, text}});
}

void Host::write(const QVariantMap& message) {
    const auto text = structured::writeJson(message, {structured::JsonLayout::Compact, false});
    const auto framed = text ? framedMessage(text->toUtf8()) : std::nullopt;
    if (!framed)
        return;
    const char* at = framed->constData();
    for (qsizetype left = framed->size(); left > 0;) {
        const ssize_t size = ::write(output_, at, static_cast<std::size_t>(left));
        if (size < 0 && errno == EINTR)
            continue;
        if (size <= 0) {
            Q_EMIT ended(true);
            return;
        }
        at += size;
        left -= size;
    }
}

}  // namespace browser
