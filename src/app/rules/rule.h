#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>

namespace app {

/// Downloads from these hosts or with these extensions go to this folder and are opened with this
/// application. Empty: no such condition, no such consequence.
struct Rule {
    QStringList hosts;
    QStringList extensions;
    QString downloadsFolder;  ///< Abbreviated with a tilde.
    QString application;      ///< An application's identifier.

    [[nodiscard]] bool hasCondition() const { return !hosts.isEmpty() || !extensions.isEmpty(); }
    [[nodiscard]] bool hasConsequence() const {
        return !downloadsFolder.isEmpty() || !application.isEmpty();
    }
    /// What a menu calls it: its hosts and extensions, or "-".
    [[nodiscard]] QString title() const;

    friend bool operator==(const Rule&, const Rule&) = default;
};

/// The form in which rules are stored and in which downloads match them.
[[nodiscard]] QVariantMap dictionaryFromRule(const Rule& rule);
[[nodiscard]] Rule ruleFromDictionary(const QVariantMap& dictionary);

/// By the first host, then by the first extension, in natural order; a rule without goes behind.
[[nodiscard]] bool isRuleOrderedBefore(const Rule& a, const Rule& b);

/// The entries of a field that holds one in each line, without blanks and dots around them, so
/// that ".zip" is taken for "zip".
[[nodiscard]] QStringList dotTrimmedStringValuesSeparatedByNewlines(const QString& text);

}  // namespace app
