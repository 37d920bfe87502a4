#include "links/pages/page_text.h"

#include <QUtf8StringView>
#include <algorithm>
#include <array>

#include "platform/text/ascii.h"
#include "platform/text/charset.h"
#include "platform/text/regular_expression.h"

using namespace Qt::Literals::StringLiterals;

namespace links {

namespace {

struct Mark {
    QByteArrayView bytes;
    QLatin1StringView charset;
};

/// The longer before those that they begin with.
constexpr std::array marks = {
    Mark{{"\xFF\xFE\0\0", 4}, "UTF-32LE"_L1},
    Mark{"\xFF\xFE", "UTF-16LE"_L1},
    Mark{"\xFE\xFF", "UTF-16BE"_L1},
};

QString charsetOfContentType(const QString& contentType) {
    const platform::RegularExpression parameter(uR"re(;\s*charset\s*=\s*"?([^\s";]+))re"_s);
    return parameter.firstCapture(contentType, 1).value_or(QString());
}

/// As HTML demands, only the first kilobyte can declare a charset, and what could be read at all
/// to find the declaration is not UTF-16.
QString charsetOfMetaElement(const QByteArray& data) {
    constexpr qsizetype declaringBytes = 1024;
    const platform::RegularExpression element(
        uR"re(<meta\s[^>]*?charset\s*=\s*["']?\s*([^\s"'/>;]+))re"_s);
    const QString start = QString::fromLatin1(data.first(std::min(data.size(), declaringBytes)));
    const QString charset = element.firstCapture(start, 1).value_or(QString());
    return charset.startsWith("UTF-16"_L1, Qt::CaseInsensitive) ? u"UTF-8"_s : charset;
}

}  // namespace

std::optional<QString> textFromUtf8(const QByteArray& data) {
    if (!QUtf8StringView(data).isValidUtf8())
        return std::nullopt;
    const QString text = QString::fromUtf8(data);
    return text.startsWith(QChar::ByteOrderMark) ? text.mid(1) : text;
}

std::optional<QString> pageText(const QByteArray& data, const QString& contentType) {
    for (const Mark& mark : marks) {
        if (data.startsWith(mark.bytes))
            return platform::decodedText(data.mid(mark.bytes.size()), QString(mark.charset));
    }
    if (!platform::isAscii(data)) {
        if (auto text = textFromUtf8(data))
            return text;
    }
    QString charset = charsetOfContentType(contentType);
    if (charset.isEmpty())
        charset = charsetOfMetaElement(data);
    // Malformed UTF-8 is rather a file than a page.
    const bool isUtf8 = charset.isEmpty() || QString(charset).remove(u'-').toLower() == u"utf8"_s;
    const auto text = isUtf8 ? std::nullopt : platform::decodedText(data, charset);
    return text ? text : textFromUtf8(data);
}

}  // namespace links
