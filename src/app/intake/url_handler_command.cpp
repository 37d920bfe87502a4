#include "app/intake/url_handler_command.h"

#include <QRegularExpression>
#include <QUrl>
#include <utility>
#include <vector>

#include "app/alert_lines.h"
#include "app/main_controller.h"
#include "links/format/numbers.h"
#include "links/text/localization.h"
#include "platform/base/log.h"
#include "platform/base/run_loop.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr platform::Seconds repetitionInterval = 1;

const QString programScheme = u"orlop"_s;
const QString secureScheme = u"secureorlop"_s;
const QString encodedForm = u"orlop://encoded/"_s;
const QString linkedForm = u"orlop://linked/"_s;

bool begins(const QString& address, const QString& beginning) {
    return address.startsWith(beginning, Qt::CaseInsensitive);
}

QString decodedBehind(const QString& beginning, const QString& address) {
    return QUrl::fromPercentEncoding(address.sliced(beginning.size()).toUtf8());
}

}  // namespace

bool hasProgramScheme(const QString& address) {
    const QString scheme = address.section(u':', 0, 0).toLower();
    return address.contains(u':') &&
           (scheme == programScheme || scheme == u"orlops"_s || scheme == secureScheme);
}

void DQURLHandlerCommand::perform(const QString& address) {
    if (isRepeated(address)) {
        platform::debugLog([&] {
            return u"suppressing duplicate handling request within a %1 second interval for URL: "
                   "<%2>"_s.arg(QString::number(repetitionInterval, 'f', 6), address);
        });
        return;
    }
    if (begins(address, secureScheme)) {
        openURLStrings(u"https"_s + address.sliced(secureScheme.size()));
    } else if (!begins(address, programScheme)) {
        openURLStrings(address);
    } else if (begins(address, encodedForm)) {
        openURLStrings(decodedBehind(encodedForm, address));
    } else if (!begins(address, linkedForm)) {
        openURLStrings(u"http"_s + address.sliced(programScheme.size()));
    } else {
        const QString text = decodedBehind(linkedForm, address);
        const QStringList lines = text.split(u'\n');
        if (lines.size() < 2 || confirmLinkedFiles(lines)) {
            openURLStrings(text);
        }
    }
}

bool DQURLHandlerCommand::isRepeated(const QString& address) {
    const platform::Seconds now = controller_.surroundings().loop.clock().monotonic();
    const QString last = std::exchange(lastAddress_, address);
    const auto time = std::exchange(lastTime_, now);
    return time && last == address && now - *time < repetitionInterval;
}

bool DQURLHandlerCommand::confirmLinkedFiles(const QStringList& lines) {
    const QString title = links::filledFormat(links::localized("Download %lu Linked Files..."),
                                              {links::stringWithInteger(lines.size())});
    if (!questions_.canAsk()) {
        Q_EMIT controller_.filesNotOpened(
            {links::filledFormat(links::localized("Several linked files are asked about first, so "
                                                  "%@ were not taken."),
                                 {links::stringWithInteger(lines.size())})});
        return false;
    }
    return questions_.confirm({Alert::Kind::LinkedFiles, title, alertLines(lines),
                               QStringLiteral("Download"), QStringLiteral("Cancel")});
}

void DQURLHandlerCommand::openURLStrings(const QString& text) {
    static const QRegularExpression newlines(u"[\\n-\\r\\x{85}\\x{2028}\\x{2029}]"_s);
    std::vector<platform::Url> urls;
    for (const QString& line : text.split(newlines)) {
        const QString trimmed = line.trimmed();
        if (const auto url = platform::Url::parse(trimmed); url && !trimmed.isEmpty()) {
            urls.push_back(*url);
        }
    }
    if (!urls.empty()) {
        controller_.openURLsAfterDelay(urls, {}, false);
    }
}

}  // namespace app
