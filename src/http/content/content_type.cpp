#include "http/content/content_type.h"

namespace http {

using namespace Qt::Literals::StringLiterals;

ContentType parseContentType(const QString& contentType) {
    const qsizetype semicolon = contentType.indexOf(u';');
    const QString mimeType = contentType.left(semicolon).trimmed();
    if (semicolon < 0 || mimeType.isEmpty())
        return {contentType.trimmed(), std::nullopt};

    constexpr QStringView label = u"charset=";
    const qsizetype found = contentType.indexOf(label, semicolon, Qt::CaseInsensitive);
    if (found < 0)
        return {mimeType, std::nullopt};
    qsizetype start = found + label.size();
    while (start < contentType.size() && contentType.at(start).isSpace())
        ++start;
    const qsizetype end = contentType.indexOf(u';', start);
    const QString name = contentType.mid(start, end < 0 ? -1 : end - start);
    return {mimeType, stringEncodingFromIANAName(name)};
}

bool isGzipContentEncoding(const QString& contentEncoding) {
    return contentEncoding.contains(u"gzip"_s);
}

}  // namespace http
