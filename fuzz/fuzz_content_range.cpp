// The first line as what was asked for, the rest as the fields of a partial answer: one that is
// accepted begins where it was asked to, and is as long as it says.
#include <QRegularExpression>

#include "fuzz_target.h"
#include "platform/net/content_range.h"

using namespace Qt::Literals::StringLiterals;

void checkInput(const QByteArray& input) {
    const QStringList lines = QString::fromUtf8(input).split(u'\n');
    platform::HTTPHeaders request, response;
    request.set(u"Range"_s, lines.value(0));
    response.set(u"Content-Range"_s, lines.value(1));
    if (lines.size() > 2)
        response.set(u"Content-Length"_s, lines.value(2));
    const platform::AskedRange asked = platform::askedRange(request);
    if (!platform::contradictionOfPartialContent(response, asked).isEmpty())
        return;
    static const QRegularExpression form(u"^bytes (\\d+)-(\\d+)/(\\d+|\\*)$"_s,
                                         QRegularExpression::CaseInsensitiveOption);
    const auto match = form.match(lines.value(1).simplified());
    if (!match.hasMatch() || asked.kind != platform::AskedRange::Kind::From)
        return;
    const std::uint64_t first = match.captured(1).toULongLong();
    const std::uint64_t last = match.captured(2).toULongLong();
    require(first == asked.first && first <= last && (!asked.last || last <= *asked.last));
    require(match.captured(3) == u"*" || last < match.captured(3).toULongLong());
    require(lines.size() < 3 || lines[2].trimmed().toULongLong() == last - first + 1);
}
