#include "platform/net/proxies/proxy_exceptions.h"

#include <algorithm>

namespace platform {

using namespace Qt::Literals::StringLiterals;

namespace {

bool isWithin(const QString& host, const QString& domain) {
    return host == domain || (host.endsWith(domain) && host.chopped(domain.size()).endsWith(u'.'));
}

/// Takes a port off the end; an IPv6 address has one only behind brackets.
std::optional<int> takePort(QString& pattern) {
    const qsizetype colon = pattern.lastIndexOf(u':');
    const bool isBare = pattern.count(u':') > 1 && !pattern.startsWith(u'[');
    bool isNumber = false;
    const int port = QStringView(pattern).mid(colon + 1).toInt(&isNumber);
    if (colon < 0 || isBare || !isNumber || colon < pattern.lastIndexOf(u']'))
        return std::nullopt;
    pattern.truncate(colon);
    return port;
}

}  // namespace

ProxyExceptions::ProxyExceptions(const QStringList& patterns) {
    for (const QString& pattern : patterns)
        add(pattern.trimmed().toLower());
}

ProxyExceptions ProxyExceptions::fromText(const QString& text) {
    return ProxyExceptions(QString(text).replace(u',', u' ').split(u' ', Qt::SkipEmptyParts));
}

void ProxyExceptions::add(const QString& text) {
    QString rest = text;
    Pattern pattern;
    pattern.port = takePort(rest);
    if (rest == u'*') {
        isEverything_ = isEverything_ || !pattern.port;
        return;
    }
    if (rest.startsWith(u'[') && rest.endsWith(u']'))
        rest = rest.sliced(1, rest.size() - 2);
    const auto [block, length] =
        rest.contains(u'/') ? QHostAddress::parseSubnet(rest)
                            : std::pair(QHostAddress(rest), rest.contains(u':') ? 128 : 32);
    if (!block.isNull() && length >= 0) {
        pattern.block = block;
        pattern.prefixLength = length;
    } else {
        while (rest.startsWith(u'*') || rest.startsWith(u'.'))
            rest.remove(0, 1);
        pattern.domain = rest;
    }
    if (!pattern.domain.isEmpty() || !pattern.block.isNull())
        patterns_.push_back(pattern);
}

bool ProxyExceptions::contain(const Url& url) const {
    const QString host = url.host().toLower();
    const QHostAddress address(host);
    return isEverything_ || std::any_of(patterns_.begin(), patterns_.end(), [&](const auto& each) {
               if (each.port && each.port != url.effectivePort())
                   return false;
               return each.domain.isEmpty() ? address.isInSubnet(each.block, each.prefixLength)
                                            : isWithin(host, each.domain);
           });
}

}  // namespace platform
