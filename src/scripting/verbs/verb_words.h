#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <optional>

namespace scripting {

/// What the words behind `orlop-terminal` ask of a running Orlop.
struct VerbWords {
    enum class Verb { Add, List, Pause, Resume, Remove, Wait };

    Verb verb = Verb::List;
    /// Addresses to add, or identities.
    QStringList words;
    bool meansAll = false;  ///< In place of identities.
    bool asJson = false;
    bool wantsHelp = false;
    QVariantMap options;  ///< Of an address to add, as the bus takes them.
    /// What is wrong with the words, for people. Empty: nothing.
    QString problem;
};

/// Nothing: the first word is no verb.
[[nodiscard]] std::optional<VerbWords> parsedVerb(const QStringList& arguments);
[[nodiscard]] QString verbUsage();

}  // namespace scripting
