#include "platform/net/content_range.h"

#include <algorithm>

#include "platform/text/ascii.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

/// Nothing: not digits alone, or more than 64 bits.
std::optional<std::uint64_t> number(QStringView text) {
    const bool isDigits = std::all_of(text.begin(), text.end(), isAsciiDigit);
    bool fits = false;
    const qulonglong value = text.toULongLong(&fits);
    return isDigits && fits ? std::optional<std::uint64_t>(value) : std::nullopt;
}

/// What follows "bytes" and the separator. Nothing: another unit.
std::optional<QStringView> afterUnit(QStringView text, QChar separator) {
    const auto unit = "bytes"_L1;
    text = text.trimmed();
    if (!text.startsWith(unit, Qt::CaseInsensitive))
        return std::nullopt;
    text = text.mid(unit.size());
    if (!text.startsWith(separator))
        return std::nullopt;
    return text.mid(1).trimmed();
}

/// The first byte that an answer to `asked` begins with. Nothing: not known.
std::optional<std::uint64_t> expectedStart(const AskedRange& asked, const ContentRange& got) {
    if (asked.kind != AskedRange::Kind::Suffix)
        return asked.first;
    if (!got.total)
        return std::nullopt;
    return *got.total - std::min(*got.total, asked.last.value_or(0));
}

}  // namespace

std::optional<ContentRange> contentRange(const QString& field) {
    const auto range = afterUnit(field, u' ');
    if (!range)
        return std::nullopt;
    const qsizetype dash = range->indexOf(u'-');
    const qsizetype slash = range->indexOf(u'/');
    if (dash < 0 || slash < dash)
        return std::nullopt;
    const auto first = number(range->left(dash).trimmed());
    const auto last = number(range->mid(dash + 1, slash - dash - 1).trimmed());
    const QStringView totalText = range->mid(slash + 1).trimmed();
    const auto total = number(totalText);
    const bool knowsTotal = totalText != "*"_L1;
    if (!first || !last || *last < *first || (knowsTotal && (!total || *total <= *last)))
        return std::nullopt;
    return ContentRange{*first, *last, total};
}

AskedRange askedRange(const HTTPHeaders& request) {
    const auto field = request.value(u"Range"_s);
    if (!field)
        return {};
    const AskedRange unknown{AskedRange::Kind::Unknown, 0, {}};
    const auto range = afterUnit(*field, u'=');
    const qsizetype dash = range ? range->indexOf(u'-') : -1;
    if (dash < 0)
        return unknown;
    const QStringView firstText = range->left(dash).trimmed();
    const QStringView lastText = range->mid(dash + 1).trimmed();
    const auto first = number(firstText);
    const auto last = number(lastText);
    if ((!first && !firstText.isEmpty()) || (!last && !lastText.isEmpty()) || (!first && !last))
        return unknown;
    if (!first)
        return {AskedRange::Kind::Suffix, 0, last};
    return {AskedRange::Kind::From, *first, last};
}

QString contradictionOfPartialContent(const HTTPHeaders& response, const AskedRange& asked) {
    if (asked.kind == AskedRange::Kind::Unknown)
        return {};
    const auto type = response.value(u"Content-Type"_s).value_or(QString());
    if (type.trimmed().startsWith("multipart/byteranges"_L1, Qt::CaseInsensitive))
        return u"the server answered a single range with several parts"_s;
    const auto field = response.value(u"Content-Range"_s);
    if (!field) {
        // Some servers call a whole document partial; nothing was asked for that it could betray.
        return asked.kind == AskedRange::Kind::Whole
                   ? QString()
                   : u"the server did not say which part of the document it sends"_s;
    }
    const auto got = contentRange(*field);
    if (!got)
        return u"the server named the part that it sends as \"%1\""_s.arg(*field);
    const auto start = expectedStart(asked, *got);
    if (start && got->first != *start)
        return u"the server sends from byte %1 on, not from byte %2"_s.arg(got->first).arg(*start);
    const bool isFrom = asked.kind == AskedRange::Kind::From;
    if (isFrom && asked.last && got->last > *asked.last)
        return u"the server sends up to byte %1, not up to byte %2"_s.arg(got->last).arg(
            *asked.last);
    if (!isFrom && got->total && got->last + 1 != *got->total)
        return u"the server sends up to byte %1 of %2"_s.arg(got->last).arg(*got->total);
    const auto length = number(response.value(u"Content-Length"_s).value_or(QString()));
    if (response.contains(u"Content-Length"_s) && !response.contains(u"Transfer-Encoding"_s) &&
        length != got->last - got->first + 1)
        return u"the part that the server sends is not as long as it says"_s;
    return {};
}

}  // namespace platform
