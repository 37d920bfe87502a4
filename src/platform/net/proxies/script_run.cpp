#include "platform/net/proxies/script_run.h"

#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/base/log.h"
#include "platform/net/proxies/script_protocol.h"

namespace platform {

using namespace Qt::Literals::StringLiterals;

namespace {

/// What a script may know of an address: no credentials, and of a secret one only the host.
QString addressForScript(const Url& url) {
    const QString address = url.forTransfer().absoluteString();
    if (!url.hasScheme("https"))
        return address;
    const qsizetype hostStart = address.indexOf(u"://"_s) + 3;
    const qsizetype hostEnd = address.indexOf(u'/', hostStart);
    const qsizetype queryStart = address.indexOf(u'?', hostStart);
    const qsizetype end = hostEnd >= 0 ? hostEnd : queryStart;
    return (end >= 0 ? address.first(end) : address) + u'/';
}

QByteArray taskFor(const QString& script, const Url& url) {
    return addressForScript(url).toUtf8() + '\0' + url.host().toLower().toUtf8() + '\0' +
           script.toUtf8();
}

}  // namespace

ProxyScriptRun::ProxyScriptRun(NetworkLoop& loop, const QString& script, const Url& url, Done done)
    : deadline_(loop.calls()), done_(std::move(done)) {
    const QByteArray task = taskFor(script, url);
    if (task.size() <= static_cast<qsizetype>(script_protocol::maximumScriptBytes))
        process_ = ScriptProcess::start(ScriptProcess::defaultProgram(), task);
    if (process_) {
        watch_.emplace(loop, process_->output().get(), [this] { readAnswer(); });
        deadline_.start(deadline, [this] { fail(u"it took too long"_s); });
    } else {
        deadline_.start(0, [this] { fail(u"it cannot be run"_s); });
    }
}

void ProxyScriptRun::readAnswer() {
    char buffer[4096];
    const ssize_t size = read(process_->output().get(), buffer, sizeof buffer);
    if (size < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    if (size <= 0)
        return readLines();
    received_.append(buffer, size);
    if (received_.size() > static_cast<qsizetype>(script_protocol::maximumAnswerBytes))
        fail(u"it says too much"_s);
}

void ProxyScriptRun::readLines() {
    for (const QByteArray& line : received_.split('\n')) {
        const QString text = QString::fromUtf8(line.mid(1));
        switch (line.isEmpty() ? '\0' : line.front()) {
            case script_protocol::alertLine:
                log(u"The script for proxies says: %1"_s.arg(text));
                break;
            case script_protocol::resultLine:
                return finish(text);
            case script_protocol::errorLine:
                return fail(text);
            default:
                break;
        }
    }
    fail(u"it was ended"_s);
}

void ProxyScriptRun::fail(const QString& why) {
    log(u"The script for proxies has failed: %1"_s.arg(why), LogLevel::Warning);
    finish(std::nullopt);
}

void ProxyScriptRun::finish(const std::optional<QString>& answer) {
    deadline_.cancel();
    watch_.reset();
    process_.reset();
    const Done done = std::exchange(done_, nullptr);
    done(answer);
}

}  // namespace platform
