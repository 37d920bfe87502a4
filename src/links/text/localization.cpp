#include "links/text/localization.h"

#include <QCoreApplication>
#include <array>

namespace links {
namespace {

/// The length of the placeholder at the start of `text`; 0: there is none.
qsizetype placeholderLength(QStringView text) {
    static constexpr std::array<QStringView, 5> placeholders{u"%@", u"%d", u"%lu", u"%qu", u"%C"};
    for (const QStringView placeholder : placeholders) {
        if (text.startsWith(placeholder))
            return placeholder.size();
    }
    return 0;
}

}  // namespace

QString localized(const char* english) {
    return QCoreApplication::translate("Orlop", english);
}

QString filledFormat(const QString& format, std::initializer_list<QString> values) {
    QString result;
    auto value = values.begin();
    for (qsizetype index = 0; index < format.size();) {
        const qsizetype length = placeholderLength(QStringView(format).sliced(index));
        if (length == 0 || value == values.end()) {
            result.append(format[index++]);
            continue;
        }
        result.append(*value++);
        index += length;
    }
    return result;
}

}  // namespace links
