#include "desktop/updates/appcast.h"

#include <openssl/evp.h>

#include <QVersionNumber>
#include <QXmlStreamReader>
#include <memory>

namespace desktop {
namespace {

constexpr qsizetype longestText = 1000;

template <auto Free>
struct Freed {
    template <typename Object>
    void operator()(Object* object) const {
        Free(object);
    }
};

const unsigned char* bytesOf(const QByteArray& data) {
    return reinterpret_cast<const unsigned char*>(data.constData());
}

bool isVersion(const QString& text) {
    qsizetype end = 0;
    return !QVersionNumber::fromString(text, &end).isNull() && end == text.size();
}

AppcastItem readItem(QXmlStreamReader& xml) {
    AppcastItem item;
    while (xml.readNextStartElement()) {
        const bool isVersionElement = xml.name() == u"version";
        const bool isLink = xml.name() == u"link";
        const QString text = xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed();
        if (text.size() > longestText) {
            continue;
        }
        if (isVersionElement && isVersion(text)) {
            item.version = text;
        } else if (isLink) {
            item.page = text;
        }
    }
    return item;
}

}  // namespace

bool isSignedBy(const QByteArray& bytes, const QByteArray& signature, const QByteArray& key) {
    const QByteArray raw = QByteArray::fromBase64(signature.simplified());
    const std::unique_ptr<EVP_PKEY, Freed<EVP_PKEY_free>> publicKey(EVP_PKEY_new_raw_public_key(
        EVP_PKEY_ED25519, nullptr, bytesOf(key), static_cast<std::size_t>(key.size())));
    const std::unique_ptr<EVP_MD_CTX, Freed<EVP_MD_CTX_free>> context(EVP_MD_CTX_new());
    return publicKey && context &&
           EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr, publicKey.get()) == 1 &&
           EVP_DigestVerify(context.get(), bytesOf(raw), static_cast<std::size_t>(raw.size()),
                            bytesOf(bytes), static_cast<std::size_t>(bytes.size())) == 1;
}

bool isNewer(const QString& version, const QString& than) {
    return QVersionNumber::fromString(version).normalized() >
           QVersionNumber::fromString(than).normalized();
}

std::optional<AppcastItem> newestItem(const QByteArray& feed) {
    std::optional<AppcastItem> newest;
    QXmlStreamReader xml(feed);
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement() || xml.name() != u"item") {
            continue;
        }
        const AppcastItem item = readItem(xml);
        if (!item.version.isEmpty() && (!newest || isNewer(item.version, newest->version))) {
            newest = item;
        }
    }
    return xml.hasError() ? std::nullopt : newest;
}

}  // namespace desktop
