#include "scripting/bus/reply.h"

#include <utility>

#include "scripting/bus/bus_names.h"

namespace scripting {

using namespace Qt::Literals::StringLiterals;

namespace {

QString nameOf(CommandError error) {
    switch (error) {
        case CommandError::InvalidArgument:
            return u"InvalidArgument"_s;
        case CommandError::InvalidAddress:
            return u"InvalidAddress"_s;
        case CommandError::UnknownDownload:
            return u"UnknownDownload"_s;
        case CommandError::TooMany:
            return u"TooMany"_s;
        case CommandError::TooLate:
            return u"TooLate"_s;
        case CommandError::NotSaved:
            return u"NotSaved"_s;
        case CommandError::NotAllowed:
            break;
    }
    return u"NotAllowed"_s;
}

}  // namespace

Reply::Reply(QDBusConnection bus, const QDBusMessage& message)
    : bus_(std::move(bus)), message_(message) {}

void Reply::send(const QVariantList& values) const {
    if (message_.isReplyRequired()) {
        bus_.send(message_.createReply(values));
    }
}

void Reply::fail(CommandError error, const QString& text) const {
    if (message_.isReplyRequired()) {
        bus_.send(message_.createErrorReply(bus::errors + nameOf(error), text));
    }
}

}  // namespace scripting
