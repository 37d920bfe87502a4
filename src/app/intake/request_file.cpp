#include "app/intake/request_file.h"

#include "platform/files/files.h"
#include "platform/files/property_list.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 mostBytesOfRequest = 64 << 20;
const auto sourceURLKey = u"DQOBPSourceURL"_s;
const auto targetPathKey = u"DQOBPTargetPath"_s;

}  // namespace

std::optional<RequestFile> requestFileFromData(const QByteArray& data) {
    QVariantMap dictionary = platform::readPropertyList(data).value.toMap();
    const QVariant source = dictionary.take(sourceURLKey);
    if (source.userType() != QMetaType::QString) {
        return {};
    }
    std::optional<platform::Url> url = platform::Url::parse(source.toString());
    if (!url) {
        return {};
    }
    const QString target = dictionary.take(targetPathKey).toString();
    return RequestFile{std::move(*url), platform::abbreviateWithTilde(target), dictionary};
}

std::optional<RequestFile> readRequestFile(const QString& path) {
    const platform::FileContents contents = platform::readFile(path, mostBytesOfRequest);
    return contents.error ? std::nullopt : requestFileFromData(contents.data);
}

}  // namespace app
