#pragma once

#include <QJSEngine>
#include <QObject>
#include <QString>
#include <functional>

namespace proxy_script {

class NameLookup;

/// What a script came to.
struct Outcome {
    QString result;  ///< As FindProxyForURL answered; empty for null.
    QString error;   ///< Not empty: there is no result.
};

/// Evaluates automatic configuration scripts. Bounds nothing by itself.
class ScriptEngine {
public:
    using Alert = std::function<void(const QString& message)>;

    /// `names` must outlive it. `alert` is called for each message that a script shows.
    ScriptEngine(NameLookup& names, Alert alert);

    /// Runs `script`, then its FindProxyForURL or, where it has none, its FindProxyForURLEx.
    [[nodiscard]] Outcome findProxy(const QString& script, const QString& url, const QString& host);

private:
    void installHelpers(NameLookup& names, Alert alert);

    QJSEngine _engine;
};

}  // namespace proxy_script
