#include <QString>

#include "fuzz_target.h"
#include "links/names/file_names.h"
#include "links/names/safe_file_name.h"
#include "links/repair/percent_escapes.h"
#include "links/repair/url_unescaping.h"

namespace {

void checkSafeName(const QString& name, qsizetype reserved) {
    const QString safe = links::safeFileName(name, reserved);
    require(!safe.isEmpty() && safe != u"." && safe != u"..");
    require(!safe.contains(u'/') && !safe.contains(QChar(u'\0')));
    require(safe.isValidUtf16());
    require(safe.toUtf8().size() <= links::maximumFileNameBytes - reserved);
    require(!links::isNegligibleFilename(safe));
    require(links::safeFileName(safe, reserved) == safe);
}

}  // namespace

/// Escapes of any kind, in addresses and in names. The bytes are UTF-16, so that halves of
/// surrogate pairs come up too.
void checkInput(const QByteArray& input) {
    QString wide(input.size() / 2, QChar(u' '));
    std::copy_n(input.constData(), wide.size() * 2, reinterpret_cast<char*>(wide.data()));
    for (const QString& text : {QString::fromUtf8(input), wide}) {
        const QString decoded = links::stringByReplacingPlusAndPercentEscapesIfNecessary(text);
        require(decoded.size() <= text.size());
        static_cast<void>(links::unescacpedURLStringWithReplacementsApplied(text, true));
        checkSafeName(decoded, 0);
        checkSafeName(text, links::partialFileSuffixBytes);
    }
}
