#pragma once

#include <QString>
#include <QVariant>
#include <deque>

namespace links {

class ReplacementRule;

/// The ordered substitutions that repair an address: a lost scheme, a disguised scheme, slashes
/// escaped for JSON, an address wrapped in that of a redirecting service, and then what the user
/// added. Each rule sees what the ones before it made.
///
/// A user's rule is a dictionary with "Query", "Replacement" and "Regular Expression"; with the
/// last one true "Query" is an expression (case-insensitive) and "Replacement" a template with $1.
/// A rule that cannot be carried out changes nothing; one that fails at its work, by running out of
/// time above all, is logged once and after a few times left out for good. Any thread, once made.
class ReplacementRules {
public:
    /// `userRules` is the root of "Replacements.plist"; anything but a list adds nothing.
    ReplacementRules(bool skipRedirectingServices, const QVariant& userRules);
    ~ReplacementRules();

    [[nodiscard]] QString applied(const QString& text) const;

    /// The rules of this run, with "Replacements.plist" of the support folder as it was at the
    /// first call, which also decides about redirecting services.
    [[nodiscard]] static const ReplacementRules& shared(bool skipRedirectingServices);

private:
    std::deque<ReplacementRule> rules_;
};

/// The root of a property list of rules. Invalid: no such file, or not readable.
[[nodiscard]] QVariant replacementRulesAtPath(const QString& path);

}  // namespace links
