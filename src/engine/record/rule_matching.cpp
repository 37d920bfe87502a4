#include "engine/record/rule_matching.h"

#include <QUrl>
#include <algorithm>

#include "platform/text/ascii.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

/// In the form in which addresses hold a host: lower case, ASCII, no root dot.
QString asciiHost(QString host) {
    while (host.endsWith(u'.'))
        host.chop(1);
    return platform::isAscii(host) ? host.toLower() : QString::fromLatin1(QUrl::toAce(host));
}

bool isOfHost(QChar unit) {
    return unit.isLetterOrNumber() || unit.isMark() || unit == u'-' || unit == u'_' || unit == u'.';
}

QString withoutPort(const QString& host) {
    const qsizetype colon = host.lastIndexOf(u':');
    if (colon < 0 || host.count(u':') > 1)
        return host;
    bool isNumber = false;
    host.mid(colon + 1).toUShort(&isNumber);
    return isNumber ? host.left(colon) : host;
}

/// An IPv6 address is written in brackets, or bare.
QString addressOfIPv6(const QString& text) {
    const bool isInBrackets = text.startsWith(u'[') && text.contains(u']');
    const QString address = isInBrackets ? text.mid(1, text.indexOf(u']') - 1) : text;
    const bool isPlain = std::all_of(address.begin(), address.end(), [](QChar unit) {
        return u"0123456789abcdefABCDEF:.%"_s.contains(unit);
    });
    return isPlain && address.count(u':') > 1 ? address : QString();
}

}  // namespace

QString hostFromText(const QString& text) {
    QString host = text.trimmed();
    if (const qsizetype scheme = host.indexOf("://"_L1); scheme >= 0)
        host.remove(0, scheme + 3);
    while (host.endsWith(u'/'))
        host.chop(1);
    if (const QString address = addressOfIPv6(host); !address.isEmpty())
        return address;
    host = withoutPort(host);
    if (host.startsWith("*."_L1))
        host.remove(0, 2);
    while (host.startsWith(u'.'))
        host.remove(0, 1);
    while (host.endsWith(u'.'))
        host.chop(1);
    const bool isHost = std::all_of(host.begin(), host.end(), isOfHost) &&
                        !host.contains(".."_L1) && !asciiHost(host).isEmpty();
    return isHost ? host : QString();
}

QString extensionFromText(const QString& text) {
    QString extension = text.trimmed();
    if (extension.startsWith("*."_L1))
        extension.remove(0, 1);
    while (extension.startsWith(u'.'))
        extension.remove(0, 1);
    while (extension.endsWith(u'.'))
        extension.chop(1);
    const bool isExtension = std::none_of(extension.begin(), extension.end(), [](QChar unit) {
        return unit.isSpace() || u",;:/*?\""_s.contains(unit);
    });
    return isExtension ? extension : QString();
}

bool hostComponentsMatch(const QStringList& pattern, const QStringList& host) {
    return !pattern.isEmpty() && pattern.size() <= host.size() &&
           std::equal(pattern.crbegin(), pattern.crend(), host.crbegin());
}

bool isHostInPatterns(const QString& host, const QStringList& patterns) {
    if (host.isEmpty())
        return false;
    const QStringList labels = asciiHost(host).split(u'.');
    return std::any_of(patterns.cbegin(), patterns.cend(), [&](const QString& pattern) {
        const QString name = asciiHost(hostFromText(pattern));
        return !name.isEmpty() && hostComponentsMatch(name.split(u'.'), labels);
    });
}

bool hasExtensionInList(const QString& fileName, const QStringList& extensions) {
    return std::any_of(extensions.cbegin(), extensions.cend(), [&](const QString& entry) {
        const QString extension = extensionFromText(entry);
        return !extension.isEmpty() && fileName.size() > extension.size() + 1 &&
               fileName.endsWith(u'.' + extension, Qt::CaseInsensitive);
    });
}

}  // namespace engine
