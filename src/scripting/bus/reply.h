#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantList>

namespace scripting {

/// Why a command was not done, as the last part of an error's name.
enum class CommandError {
    InvalidArgument,
    InvalidAddress,
    UnknownDownload,
    TooMany,
    TooLate,
    NotSaved,
    NotAllowed,
};

/// The answer to one command, at once or later. Main thread.
class Reply {
public:
    Reply(QDBusConnection bus, const QDBusMessage& message);

    void send(const QVariantList& values = {}) const;
    void fail(CommandError error, const QString& text) const;

private:
    QDBusConnection bus_;
    QDBusMessage message_;
};

}  // namespace scripting
