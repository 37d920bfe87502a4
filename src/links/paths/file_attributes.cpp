#include "links/paths/file_attributes.h"

#include "platform/files/files.h"
#include "platform/files/property_list.h"
#include "platform/net/url.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

QString name(const char16_t* attribute) {
    return QString::fromUtf16(attribute);
}

/// `File`: a path or a descriptor.
template <typename File>
bool setText(const File& file, const char16_t* attribute, const QString& text) {
    return platform::setExtendedAttribute(file, name(attribute), text.toUtf8());
}

/// Whoever copies or reads the file must not learn a password from it.
QString withoutSecrets(const QString& address) {
    const auto url = platform::Url::parse(address);
    return url ? url->forTransfer().absoluteString() : address;
}

template <typename File>
bool setSources(const File& file, const QStringList& urlStrings, bool alsoAsComment) {
    if (urlStrings.isEmpty())
        return false;
    QStringList sources;
    for (const QString& address : urlStrings)
        sources.append(withoutSecrets(address));
    if (alsoAsComment)
        setText(file, attributes::comment, sources.join(u", "_s));
    setText(file, attributes::originURL, sources[0]);
    if (sources.size() > 1)
        setText(file, attributes::referrerURL, sources[1]);
    const QByteArray list = platform::writePropertyList(
        QVariantList(sources.begin(), sources.end()), platform::PropertyListFormat::Binary);
    return platform::setExtendedAttribute(file, name(attributes::sourceURLs), list);
}

}  // namespace

bool setDataForExtendedFileAttribute(const QString& path, const QByteArray& data,
                                     const QString& attribute) {
    return platform::pathExists(path) && !platform::setExtendedAttribute(path, attribute, data);
}

std::optional<QByteArray> dataForExtendedFileAttribute(const QString& path,
                                                       const QString& attribute) {
    return platform::extendedAttribute(path, attribute);
}

bool setValueForExtendedFileAttribute(const QString& path, const QVariant& value,
                                      const QString& attribute) {
    const QByteArray data =
        platform::writePropertyList(value, platform::PropertyListFormat::Binary);
    return !data.isEmpty() && setDataForExtendedFileAttribute(path, data, attribute);
}

QVariant valueForExtendedFileAttribute(const QString& path, const QString& attribute) {
    const auto data = dataForExtendedFileAttribute(path, attribute);
    return data ? platform::readPropertyList(*data).value : QVariant();
}

bool setSpotlightComment(const QString& path, const QString& comment) {
    return setText(path, attributes::comment, comment);
}

bool setSourceURLStrings(const QString& path, const QStringList& urlStrings, bool alsoAsComment) {
    return setSources(path, urlStrings, alsoAsComment);
}

bool setSourceURLStrings(const platform::Descriptor& file, const QStringList& urlStrings,
                         bool alsoAsComment) {
    return setSources(file, urlStrings, alsoAsComment);
}

bool isFromURLString(const QString& path, const QString& urlString) {
    return platform::extendedAttribute(path, name(attributes::originURL)) ==
           withoutSecrets(urlString).toUtf8();
}

bool setFractionCompleted(const QString& path, const QString& fraction) {
    return setText(path, attributes::fractionCompleted, fraction);
}

}  // namespace links
