#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <optional>
#include <vector>

#include "app/intake/script_arguments.h"
#include "platform/net/url.h"

/// What comes over the bus, made into what it means. All of it may be anything: whatever is not as
/// agreed, or longer than it may be, is refused with a reason. Any thread.
namespace scripting {

inline constexpr qsizetype mostAddresses = 10'000;
inline constexpr qsizetype mostIdentities = 10'000;
inline constexpr qsizetype mostHandOvers = 1000;

/// A value, or why there is none, for whoever has sent it.
template <typename Value>
struct Parsed {
    std::optional<Value> value;
    QString problem = {};
    bool isAddressAtFault = false;
};

/// The addresses of a script, one or several lines each. What is no address is left out.
[[nodiscard]] Parsed<std::vector<platform::Url>> parsedAddresses(const QStringList& addresses);
/// The arguments of the download command.
[[nodiscard]] Parsed<app::ScriptArguments> parsedArguments(const QVariantMap& dictionary);

/// One download to add, for which nobody is asked anything.
struct AddRequest {
    platform::Url url;
    QString folder;  ///< Absolute. Empty: the rules decide.
    QString name;    ///< One component. Empty: made from the address.
    bool isPaused = false;
    QVariantMap request;    ///< As the "Request" of its settings.
    QString checksum = {};  ///< As the "Checksum" of its settings. Empty: unknown.
};
[[nodiscard]] Parsed<AddRequest> parsedAddRequest(const QString& address,
                                                  const QVariantMap& options);

/// What a browser hands over.
struct HandOverRequest {
    QString id;
    platform::Url url;
    QString name;  ///< One component. Empty: none is suggested.
    std::optional<qint64> size;
    QString page;  ///< Of HTTP. Empty: unknown.
    bool isPrivate = false;
    QVariantMap request;    ///< As the "Request" of its settings, without cookies.
    QString cookies;        ///< The value of a header.
    double deadline = 1.5;  ///< Seconds from its arrival.
};
[[nodiscard]] bool isHandOverId(const QString& id);
[[nodiscard]] Parsed<HandOverRequest> parsedHandOver(const QVariantMap& dictionary);

/// Nothing: no list of identities.
[[nodiscard]] bool areIdentities(const QStringList& identities);

}  // namespace scripting
