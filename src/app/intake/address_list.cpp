#include "app/intake/address_list.h"

#include <algorithm>

#include "links/pages/page_text.h"
#include "links/recognition/text_addresses.h"
#include "links/recognition/text_items.h"
#include "links/text/trimming.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

QString addressListText(const QByteArray& data) {
    QString text = links::pageText(data, u"text/plain; charset=windows-1252"_s)
                       .value_or(QString::fromUtf8(data));
    if (!text.contains(u'#')) {
        text.squeeze();  // It stays until the last of its addresses is taken in.
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
    addresses.squeeze();
    return addresses;
}

bool isAddressList(const QString& text, bool skipRedirectingServices) {
    constexpr int mostLines = 1000;
    links::TextItems lines(text);
    int balance = 0;
    for (int count = 0; count < mostLines; ++count) {
        const std::optional<QString> line = lines.next();
        if (!line) {
            break;
        }
        const auto finding = links::TextAddresses(*line, skipRedirectingServices).next();
        balance += finding && finding->address ? 1 : -1;
    }
    return balance > 0;
}

}  // namespace app
