#include "proxy_script/sloppy_source.h"

#include <algorithm>
#include <array>
#include <vector>

namespace proxy_script {

using namespace Qt::Literals::StringLiterals;

namespace {

bool isOctal(QChar c) {
    return c >= u'0' && c <= u'7';
}

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

bool isWordCharacter(QChar c) {
    return c.isLetterOrNumber() || c == u'_' || c == u'$';
}

bool isLineEnd(QChar c) {
    return c == u'\n' || c == u'\r' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
}

/// After these a slash begins a regular expression.
bool isOperatorWord(QStringView word) {
    constexpr std::array words{"return"_L1, "typeof"_L1, "case"_L1,       "in"_L1,
                               "of"_L1,     "delete"_L1, "instanceof"_L1, "void"_L1,
                               "throw"_L1,  "new"_L1,    "do"_L1,         "else"_L1};
    return std::find(words.begin(), words.end(), word) != words.end();
}

/// Copies a script token by token. It need not understand what it copies, only where strings,
/// comments, expressions and numbers begin and end.
class Rewriter {
public:
    explicit Rewriter(const QString& script) : in_(script) { out_.reserve(script.size() + 64); }

    QString rewritten() {
        while (!isAtEnd())
            copyToken();
        return out_;
    }

private:
    [[nodiscard]] bool isAtEnd() const { return at_ >= in_.size(); }
    [[nodiscard]] QChar peek(qsizetype ahead = 0) const {
        return at_ + ahead < in_.size() ? in_[at_ + ahead] : QChar();
    }
    [[nodiscard]] bool isAt(QLatin1String text) const { return in_.mid(at_).startsWith(text); }
    void copy(qsizetype count = 1) {
        const QStringView part = in_.mid(at_, count);
        out_ += part;
        at_ += part.size();
    }

    void copyToken() {
        const QChar c = peek();
        if (c.isSpace())
            copyBlank();
        else if (isAt("//"_L1) || isAt("<!--"_L1) || (isLineBegun_ && isAt("-->"_L1)))
            copyLineComment();
        else if (isAt("/*"_L1))
            copyBlockComment();
        else
            copyRealToken(c);
    }

    void copyRealToken(QChar c) {
        isLineBegun_ = false;
        const bool couldDivide = mayDivide_;
        mayDivide_ = true;
        if (c == u'"' || c == u'\'')
            copyString(c);
        else if (c == u'`' || (c == u'}' && !braces_.empty() && braces_.back() == 0))
            copyTemplate();
        else if (isDigit(c))
            copyNumber();
        else if (c == u'.' && isDigit(peek(1)))
            copyRestOfNumber();
        else if (isWordCharacter(c))
            copyWord();
        else if (c == u'/' && !couldDivide)
            copyExpression();
        else
            copyPunctuation(c);
    }

    void copyBlank() {
        isLineBegun_ = isLineBegun_ || isLineEnd(peek());
        copy();
    }

    void copyLineComment() {
        if (!isAt("//"_L1))
            out_ += u"//"_s;
        while (!isAtEnd() && !isLineEnd(peek()))
            copy();
    }

    void copyBlockComment() {
        const qsizetype end = in_.indexOf(u"*/"_s, at_ + 2);
        const qsizetype length = end < 0 ? in_.size() - at_ : end + 2 - at_;
        const QStringView comment = in_.mid(at_, length);
        isLineBegun_ = isLineBegun_ || std::any_of(comment.begin(), comment.end(), isLineEnd);
        copy(length);
    }

    void copyString(QChar quote) {
        copy();
        while (!isAtEnd() && peek() != quote && !isLineEnd(peek())) {
            if (peek() == u'\\')
                copyEscape();
            else
                copy();
        }
        if (peek() == quote)
            copy();
    }

    void copyEscape() {
        const QChar first = peek(1);
        if (isOctal(first) && (first != u'0' || isDigit(peek(2)))) {
            ++at_;
            copyOctalEscape();
        } else if (first == u'8' || first == u'9') {
            ++at_;
            copy();
        } else {
            copy(first == u'\r' && peek(2) == u'\n' ? 3 : 2);
        }
    }

    /// Three digits at most, and no more than a byte.
    void copyOctalEscape() {
        const int most = peek() <= u'3' ? 3 : 2;
        int value = 0;
        for (int digits = 0; digits < most && isOctal(peek()); ++digits, ++at_)
            value = value * 8 + peek().digitValue();
        out_ += u"\\x"_s + QString::number(value, 16).rightJustified(2, u'0');
    }

    /// Up to its end, or to an expression in it that comes back here.
    void copyTemplate() {
        if (peek() == u'}')
            braces_.pop_back();
        copy();
        while (!isAtEnd() && peek() != u'`') {
            if (isAt("${"_L1)) {
                copy(2);
                braces_.push_back(0);
                mayDivide_ = false;
                return;
            }
            copy(peek() == u'\\' ? 2 : 1);
        }
        copy();
    }

    void copyNumber() {
        qsizetype digits = 0;
        bool isLegacyOctal = true;
        while (isDigit(peek(digits)))
            isLegacyOctal = isOctal(peek(digits++)) && isLegacyOctal;
        if (peek() == u'0' && digits > 1) {
            if (isLegacyOctal)
                out_ += u"0o"_s;
            while (digits > 1 && peek() == u'0') {
                ++at_;
                --digits;
            }
        }
        copy(digits);
        copyRestOfNumber();
    }

    /// A fraction, an exponent, or what follows the zero of "0xff".
    void copyRestOfNumber() {
        const bool isHexadecimal = peek() == u'x' || peek() == u'X';
        while (isWordCharacter(peek()) || (peek() == u'.' && isDigit(peek(1)))) {
            const bool isExponent = !isHexadecimal && (peek() == u'e' || peek() == u'E') &&
                                    (peek(1) == u'-' || peek(1) == u'+');
            copy(isExponent ? 2 : 1);
        }
    }

    void copyWord() {
        const qsizetype start = at_;
        while (isWordCharacter(peek()))
            copy();
        mayDivide_ = !isOperatorWord(in_.sliced(start, at_ - start));
    }

    void copyExpression() {
        bool isInClass = false;
        copy();
        while (!isAtEnd() && !isLineEnd(peek()) && (isInClass || peek() != u'/')) {
            isInClass = peek() == u'[' || (isInClass && peek() != u']');
            copy(peek() == u'\\' ? 2 : 1);
        }
        if (peek() == u'/')
            copy();
    }

    void copyPunctuation(QChar c) {
        if (!braces_.empty() && (c == u'{' || c == u'}'))
            braces_.back() += c == u'{' ? 1 : -1;
        mayDivide_ = c == u')' || c == u']';
        copy();
    }

    const QStringView in_;
    qsizetype at_ = 0;
    QString out_;
    bool isLineBegun_ = true;  ///< Nothing but blanks and comments so far.
    bool mayDivide_ = false;   ///< Otherwise a slash begins an expression.
    std::vector<int> braces_;  ///< Open ones in each expression within a template.
};

}  // namespace

QString withoutLegacySyntax(const QString& script) {
    return Rewriter(script).rewritten();
}

}  // namespace proxy_script
