#include "links/recognition/text_items.h"

#include <algorithm>

#include "links/recognition/address_start.h"
#include "links/recognition/text_marks.h"
#include "links/text/trimming.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

// Where mail programs break lines: at 76 columns, some a little before or behind.
constexpr qsizetype shortestBrokenLine = 70;
constexpr qsizetype longestBrokenLine = 80;
constexpr qsizetype longestAddress = 8192;

/// Without the marks of a quoted mail in front.
QStringView withoutQuoting(QStringView line) {
    while (line.startsWith(u'>') || line.startsWith(u' '))
        line = line.sliced(1);
    return withoutMarks(line);
}

bool isOfAddress(QChar unit) {
    return unit.unicode() > u' ' && unit.unicode() < 0x7F &&
           !QStringView(u"\"<>\\^`{|}").contains(unit);
}

/// Whether a word looks as only the middle of an address does.
bool hasSignOfAddress(QStringView word) {
    return std::any_of(
               word.begin(), word.end(),
               [](QChar unit) { return QStringView(u"/=&%?_-.0123456789").contains(unit); }) &&
           !(word.endsWith(u'.') && word.count(u'.') == 1);
}

/// The address at the end of a line, from its scheme on. Empty: the line does not end within one.
QStringView addressAtEnd(QStringView line) {
    QStringView address;
    for (auto start = findAddressStart(line); start; start = findAddressStart(line, start->rest))
        address = line.sliced(start->position);
    return std::all_of(address.begin(), address.end(), isOfAddress) ? address : QStringView();
}

bool continuesAddress(QStringView line, QStringView next) {
    const bool isBroken = line.size() >= shortestBrokenLine && line.size() <= longestBrokenLine;
    if (!isBroken && !line.contains(u'<'))
        return false;
    const QStringView address = addressAtEnd(line);
    const QStringView following = withoutQuoting(next);
    if (address.isEmpty() || following.isEmpty() || findAddressStart(following) ||
        following.startsWith(u"www."))
        return false;
    const auto wordEnd = std::find_if_not(following.begin(), following.end(), isOfAddress);
    const QStringView word(following.begin(), wordEnd);
    const QStringView behind = following.sliced(word.size());
    const QStringView before = line.first(line.size() - address.size());
    if ((before.endsWith(u'<') || before.endsWith(u"<URL:", Qt::CaseInsensitive)) &&
        behind.startsWith(u'>'))
        return true;
    if (!isBroken || word.isEmpty())
        return false;
    return line.endsWith(u'=') || (behind.isEmpty() && hasSignOfAddress(word));
}

/// The bytes that quoted-printable text spells (RFC 2045, 6.7), as far as addresses hold them.
QString withoutQuotedPrintable(QString text) {
    return text.replace("=3D"_L1, "="_L1).replace("=26"_L1, "&"_L1).replace("=2E"_L1, "."_L1);
}

}  // namespace

TextItems::TextItems(QStringList texts) : texts_(std::move(texts)) {}

std::optional<QStringView> TextItems::takeLine() {
    if (index_ >= texts_.size() || position_ >= texts_[index_].size())
        return std::nullopt;
    const QStringView text(texts_[index_]);
    const auto start = text.begin() + position_;
    const auto end = std::find_if(start, text.end(), isNewline);
    position_ = end - text.begin() + 1;
    // A line break of two units is one.
    if (end != text.end() && *end == u'\r' && position_ < text.size() && text[position_] == u'\n')
        ++position_;
    return QStringView(start, end);
}

std::optional<QString> TextItems::next() {
    while (index_ < texts_.size()) {
        const auto line = takeLine();
        if (!line) {
            ++index_;
            position_ = 0;
            continue;
        }
        const QStringView trimmed = withoutMarks(*line);
        if (trimmed.isEmpty())
            continue;
        QString item = trimmed.toString();
        takeContinuations(item, trimmed);
        return item;
    }
    return std::nullopt;
}

void TextItems::takeContinuations(QString& item, QStringView line) {
    bool isQuotedPrintable = false;
    while (item.size() < longestAddress) {
        const qsizetype before = position_;
        const auto next = takeLine();
        if (!next || !continuesAddress(line, *next)) {
            position_ = before;
            break;
        }
        if (line.endsWith(u'=')) {
            isQuotedPrintable = true;
            item.chop(1);
        }
        item.append(withoutQuoting(*next));
        line = withoutMarks(*next);
    }
    if (isQuotedPrintable)
        item = withoutQuotedPrintable(item);
}

}  // namespace links
