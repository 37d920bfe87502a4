#include "http/extras/cache/cache_keys.h"

#include <QCryptographicHash>
#include <algorithm>

namespace http {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype longestExtension = 32;

/// The extension comes from a server's address and must stay part of a file's name.
bool isHarmless(const QString& extension) {
    const auto allowed = [](QChar character) {
        return character.isLetterOrNumber() || character == u'-' || character == u'_';
    };
    return extension.size() <= longestExtension &&
           std::all_of(extension.begin(), extension.end(), allowed);
}

}  // namespace

QString cacheKeyForURL(const platform::Url& url) {
    QString text = url.absoluteString();
    if (text.isEmpty())
        return {};
    if (text.endsWith(u'/'))
        text.chop(1);
    const QByteArray digest = QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Md5);
    return QString::fromLatin1(digest.toHex().toUpper());
}

QStringList fileExtensionsToHandleAsHTML() {
    return {u"asp"_s, u"aspx"_s, u"jsp"_s, u"php"_s, u"rb"_s, u"py"_s, u"pl"_s, u"cgi"_s};
}

QString cacheExtensionForURL(const platform::Url& url) {
    const QString name = url.lastPathComponent();
    const qsizetype dot = name.lastIndexOf(u'.');
    const QString extension = dot < 0 ? QString() : name.mid(dot + 1);
    // The headers have an extension of their own.
    const bool isTaken = extension == u"cachedheaders"_s;
    if (extension.isEmpty() || isTaken || !isHarmless(extension) ||
        fileExtensionsToHandleAsHTML().contains(extension.toLower()))
        return u"html"_s;
    return extension;
}

}  // namespace http
