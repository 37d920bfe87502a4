#include "app/intake/address_list.h"

#include <algorithm>

#include "links/pages/page_text.h"
#include "links/text/trimming.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

QString addressListText(const QByteArray& data) {
    const QString text = links::pageText(data, u"text/plain; charset=windows-1252"_s)
                             .value_or(QString::fromUtf8(data));
    if (!text.contains(u'#')) {
        return text;
    }
    QString addresses;
    for (auto start = text.begin(); start != text.end();) {
        const auto lineEnd = std::find_if(start, text.end(), links::isNewline);
        const auto next = lineEnd == text.end() ? lineEnd : lineEnd + 1;
        if (!links::trimmedView(QStringView(start, lineEnd)).startsWith(u'#')) {
            addresses.append(QStringView(start, next));
        }
        start = next;
    }
    return addresses;
}

}  // namespace app
