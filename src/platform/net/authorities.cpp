#include "platform/net/authorities.h"

#include <curl/curl.h>

#include <QFile>
#include <QFileInfo>
#include <algorithm>

#include "platform/base/log.h"

namespace platform {

using namespace Qt::Literals::StringLiterals;

namespace {

bool isReadableFile(const QString& path) {
    const QFileInfo file(path);
    return file.isFile() && file.isReadable();
}

QStringList bundlesOfDistributions() {
    return {u"/etc/ssl/certs/ca-certificates.crt"_s,  // Debian, Arch, Gentoo, NixOS
            u"/etc/pki/tls/certs/ca-bundle.crt"_s,    // Fedora and its relatives
            u"/etc/pki/ca-trust/extracted/pem/tls-ca-bundle.pem"_s,
            u"/etc/ssl/ca-bundle.pem"_s,  // openSUSE
            u"/etc/ssl/cert.pem"_s};      // Alpine, Void
}

QString foundAuthorities() {
    const curl_version_info_data* const libcurl = curl_version_info(CURLVERSION_NOW);
    QString found =
        standInAuthorities({QFile::decodeName(libcurl->cainfo), QFile::decodeName(libcurl->capath)},
                           bundlesOfDistributions());
    if (!found.isEmpty())
        log(u"trusting the authorities in %1"_s.arg(found));
    return found;
}

}  // namespace

QString standInAuthorities(const BuiltInAuthorities& builtIn, const QStringList& bundles) {
    // A file that is missing fails the connection, whatever is in the folder.
    const bool isThere =
        builtIn.file.isEmpty() ? QFileInfo(builtIn.folder).isDir() : isReadableFile(builtIn.file);
    const auto bundle = std::ranges::find_if(bundles, isReadableFile);
    return isThere || bundle == bundles.end() ? QString() : *bundle;
}

QString systemAuthorities() {
    static const QString path = foundAuthorities();
    return path;
}

}  // namespace platform
