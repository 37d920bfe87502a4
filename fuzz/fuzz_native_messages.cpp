// Any bytes as what a browser writes to the host, cut anywhere: the same messages come of it, and
// what is taken as a call holds nothing that could not stand in a request.
#include "browser/calls.h"
#include "browser/native_messages.h"
#include "fuzz_target.h"

namespace {

QList<QByteArray> messagesOf(const QByteArray& input, qsizetype step) {
    browser::MessageCutter cutter;
    QList<QByteArray> messages;
    for (qsizetype at = 0; at < input.size(); at += step) {
        cutter.append(QByteArrayView(input).sliced(at, std::min(step, input.size() - at)));
        while (const auto message = cutter.next())
            messages.append(*message);
    }
    return messages;
}

void check(const QByteArray& message) {
    const auto read = browser::readCall(message);
    const auto* const call = std::get_if<browser::Call>(&read);
    if (call == nullptr) {
        require(!std::get<browser::CallProblem>(read).text.isEmpty());
        return;
    }
    require(call->patience <= browser::longestPatience &&
            call->requests.size() <= browser::mostRequests);
    for (const QVariantMap& request : call->requests) {
        require(!request.value(QStringLiteral("id")).toString().isEmpty());
        require(request.value(QStringLiteral("address"))
                    .toString()
                    .startsWith(QLatin1StringView("http"), Qt::CaseInsensitive));
        for (const QVariant& value : request)
            if (value.typeId() == QMetaType::QString)
                require(!value.toString().contains(u'\n') && !value.toString().contains(u'\r') &&
                        !value.toString().contains(QChar(0)));
    }
}

}  // namespace

void checkInput(const QByteArray& input) {
    require(messagesOf(input, 7) == messagesOf(input, input.size() + 1));
    for (const QByteArray& message : messagesOf(input, input.size() + 1)) {
        require(message.size() <= browser::maximumMessageBytes);
        check(message);
    }
    check(input);
}
