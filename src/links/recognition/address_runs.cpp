#include "links/recognition/address_runs.h"

#include <array>

#include "links/recognition/address_start.h"
#include "links/recognition/text_marks.h"
#include "links/text/trimming.h"
#include "platform/net/url.h"
#include "platform/text/ascii.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

/// Finds the end of an address within the text around it.
class RunEnd {
public:
    RunEnd(QStringView text, const AddressStart& start)
        : text_(text),
          start_(start),
          before_(start.position > 0 ? text[start.position - 1] : QChar(u'\0')) {}

    [[nodiscard]] qsizetype find() {
        qsizetype at = start_.rest;
        while (at < text_.size()) {
            if (isPlain(text_[at])) {
                ++at;
                continue;
            }
            if (const qsizetype end = endOfRangeGroup(text_, at); end > at) {
                at = end;
                continue;
            }
            if (endsAt(at))
                break;
            ++at;
        }
        return withoutTrailingMarks(at);
    }

private:
    /// Most of an address: what neither ends one nor begins a group, whatever stands around it.
    [[nodiscard]] static bool isPlain(QChar unit) {
        const char c = unit.toLatin1();
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '/' || c == '.' || c == '-' || c == '_';
    }

    bool endsAt(qsizetype at) {
        const QChar unit = text_[at];
        if (unit.isSpace() || isNewline(unit) || unit == u'<' || unit == u'>' ||
            isWidePunctuation(unit))
            return true;
        if (isQuotationMark(unit))
            return !isApostrophe(at);
        if (unit == u'\\')
            return !text_.sliced(at + 1).startsWith(u'/');
        if (unit == u'?')
            isInQuery_ = true;
        if (unit == u'|')
            return !isInQuery_ || isInTable();
        if (unit == u',' || unit == u';')
            return unit == before_ || beginsAddress(at + 1) || isBeforeWideText(at + 1) ||
                   isWordBehindFile(at);
        if (isSymbol(at) && endsInExtension(soFar(at)))
            return true;
        return endsAtBracket(at);
    }

    bool endsAtBracket(qsizetype at) {
        static constexpr QStringView opening = u"([{";
        static constexpr QStringView closing = u")]}";
        const QChar unit = text_[at];
        if (const qsizetype kind = opening.indexOf(unit); kind >= 0) {
            ++open_[static_cast<std::size_t>(kind)];
            // The end of a BBCode tag.
            return unit == u'[' && text_.sliced(at + 1).startsWith(u'/');
        }
        const qsizetype kind = closing.indexOf(unit);
        return kind >= 0 && --open_[static_cast<std::size_t>(kind)] < 0;
    }

    /// Within a word, and nothing that closes what was opened before the address.
    [[nodiscard]] bool isApostrophe(qsizetype at) const {
        const QChar unit = text_[at];
        return (unit == u'\'' || unit == u'\u2019') && !isQuotationMark(before_) &&
               at + 1 < text_.size() && text_[at - 1].isLetter() && text_[at + 1].isLetter();
    }

    [[nodiscard]] bool isInTable() const {
        return before_ == u'<' || before_ == u'|' || text_.startsWith(u'|');
    }

    [[nodiscard]] bool beginsAddress(qsizetype at) const {
        const auto next =
            findAddressStart(text_.sliced(at, std::min<qsizetype>(20, text_.size() - at)));
        return next && next->position == 0;
    }

    [[nodiscard]] QStringView soFar(qsizetype at) const {
        return text_.sliced(start_.position, at - start_.position);
    }

    /// An arrow or an emoji, which somebody puts beside an address.
    [[nodiscard]] bool isSymbol(qsizetype at) const {
        if (platform::isAscii(text_[at]))
            return false;
        const bool isPair = text_[at].isHighSurrogate() && at + 1 < text_.size();
        const char32_t code = isPair ? QChar::surrogateToUcs4(text_[at], text_[at + 1])
                                     : char32_t{text_[at].unicode()};
        const QChar::Category category = QChar::category(code);
        return category == QChar::Symbol_Other || category == QChar::Symbol_Math;
    }

    /// As in "x.zip;thanks", which is no parameter of a path.
    [[nodiscard]] bool isWordBehindFile(qsizetype at) const {
        qsizetype end = at + 1;
        while (end < text_.size() && text_[end].isLetter())
            ++end;
        const bool isWord = end > at + 1 && (end == text_.size() || text_[end].isSpace());
        return isWord && endsInExtension(soFar(at));
    }

    /// As where Chinese follows a comma without a blank.
    [[nodiscard]] bool isBeforeWideText(qsizetype at) const {
        return at < text_.size() && text_[at].unicode() >= 0x2E80 && text_[at].isLetter();
    }

    /// Emphasis goes together with its other half.
    [[nodiscard]] bool isTrailing(QChar unit) const {
        return isTrailingPunctuation(unit) || isInvisible(unit) || unit == u'\\' ||
               (unit == before_ && (unit == u'*' || unit == u'_' || unit == u'~'));
    }

    [[nodiscard]] qsizetype withoutTrailingMarks(qsizetype end) const {
        while (end > start_.rest && isTrailing(text_[end - 1]))
            --end;
        return end;
    }

    const QStringView text_;
    const AddressStart start_;
    const QChar before_;
    /// How many brackets of each kind the address has opened.
    std::array<int, 3> open_{};
    bool isInQuery_ = false;
};

/// What can be the name of a server, so that "https://..." and "https://$HOST/" are none.
bool hasHost(QStringView rest) {
    if (rest.startsWith(u'['))
        return rest.contains(u']');
    const qsizetype userInfo = rest.indexOf(u'@');
    const qsizetype slash = rest.indexOf(u'/');
    if (userInfo >= 0 && (slash < 0 || userInfo < slash))
        rest = rest.sliced(userInfo + 1);
    return !rest.isEmpty() && (rest.front().isLetterOrNumber() || rest.front() == u'%');
}

}  // namespace

bool isTooLongForAddress(QStringView text) {
    return text.size() > platform::Url::longest && !text.contains(u'{');
}

QString withoutDisarming(const QString& address) {
    if (!address.contains(u'[') && !address.contains(u'(') && !address.contains(u'{'))
        return address;
    QString armed = address;
    for (const auto& [disarmed, plain] :
         {std::pair("[:]"_L1, ":"_L1), std::pair("[://]"_L1, "://"_L1), std::pair("[.]"_L1, "."_L1),
          std::pair("(.)"_L1, "."_L1), std::pair("{.}"_L1, "."_L1), std::pair("[dot]"_L1, "."_L1),
          std::pair("(dot)"_L1, "."_L1)})
        armed.replace(disarmed, plain, Qt::CaseInsensitive);
    return armed;
}

QStringList addressRuns(QStringView text) {
    QStringList runs;
    auto start = findAddressStart(text);
    while (start) {
        const qsizetype end = RunEnd(text, *start).find();
        const QStringView run = text.sliced(start->position, end - start->position);
        if (hasHost(text.sliced(start->rest, end - start->rest)) && !isTooLongForAddress(run))
            runs.append(withoutDisarming(run.toString()));
        start = findAddressStart(text, std::max(end, start->rest));
    }
    return runs;
}

qsizetype lengthOfLeadingRun(QStringView text) {
    const auto start = findAddressStart(text.first(std::min<qsizetype>(20, text.size())));
    return start && start->position == 0 ? RunEnd(text, *start).find() : 0;
}

}  // namespace links
