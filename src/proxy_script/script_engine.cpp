#include "proxy_script/script_engine.h"

#include <QFile>
#include <utility>

#include "proxy_script/sloppy_source.h"
#include "proxy_script/system_functions.h"

// The library is static, so its resources must be asked for; not possible inside of a namespace.
static void registerResources() {
    Q_INIT_RESOURCE(helpers);
}

namespace proxy_script {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Anything can be thrown; only a script can tell it from what was answered.
const QString guardedCall =
    u"(function (find, url, host) { try { return [find(url, host), false]; }"
    " catch (thrown) { return [thrown, true]; } })"_s;

QString errorText(const QJSValue& error) {
    const QJSValue line = error.property(u"lineNumber"_s);
    return line.isNumber() ? u"line %1: %2"_s.arg(line.toInt()).arg(error.toString())
                           : error.toString();
}

}  // namespace

ScriptEngine::ScriptEngine(NameLookup& names, Alert alert) {
    registerResources();
    installHelpers(names, std::move(alert));
}

void ScriptEngine::installHelpers(NameLookup& names, Alert alert) {
    QFile file(u":/proxy_script/helpers.js"_s);
    const bool isOpen = file.open(QIODevice::ReadOnly);
    Q_ASSERT(isOpen);
    const QJSValue system =
        _engine.newQObject(new SystemFunctions(names, std::move(alert)));  // The engine owns it.
    const QJSValue helpers =
        _engine.evaluate(QString::fromUtf8(file.readAll()), file.fileName()).call({system});
    Q_ASSERT(!helpers.isError());
    QJSValue global = _engine.globalObject();
    for (const QString& name :
         _engine.evaluate(u"Object.keys"_s).call({helpers}).toVariant().toStringList())
        global.setProperty(name, helpers.property(name));
}

Outcome ScriptEngine::findProxy(const QString& script, const QString& url, const QString& host) {
    QStringList trace;
    const QJSValue evaluated =
        _engine.evaluate(withoutLegacySyntax(script), u"script"_s, 1, &trace);
    // A thrown value need be no error object; then only the trace tells.
    if (evaluated.isError() || !trace.isEmpty())
        return {{}, errorText(evaluated)};
    QJSValue function = _engine.globalObject().property(u"FindProxyForURL"_s);
    if (function.isUndefined())
        function = _engine.globalObject().property(u"FindProxyForURLEx"_s);
    if (!function.isCallable())
        return {{}, u"FindProxyForURL is not a function"_s};
    const QJSValue tried = _engine.evaluate(guardedCall).call({function, url, host});
    if (tried.property(1).toBool())
        return {{}, errorText(tried.property(0))};
    const QJSValue answer = tried.property(0);
    if (answer.isNull())
        return {};
    return answer.isString() ? Outcome{answer.toString(), {}}
                             : Outcome{{}, u"FindProxyForURL answered no text"_s};
}

}  // namespace proxy_script
