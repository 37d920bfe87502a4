#include "diagnostics/log_predicate.h"

#include <algorithm>
#include <optional>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace diagnostics {

namespace {

using Field = LogPredicate::Field;
using Test = LogPredicate::Test;

enum class Comparison { Equal, Unequal, Contains, BeginsWith, EndsWith };

bool holds(Comparison comparison, const QByteArray& value, const QByteArray& wanted) {
    switch (comparison) {
        case Comparison::Equal:
            return value == wanted;
        case Comparison::Unequal:
            return value != wanted;
        case Comparison::Contains:
            return value.contains(wanted);
        case Comparison::BeginsWith:
            return value.startsWith(wanted);
        case Comparison::EndsWith:
            return value.endsWith(wanted);
    }
    return false;
}

bool isNameCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

class PredicateParser {
public:
    explicit PredicateParser(const QByteArray& text) : text_(text) {}

    /// Nothing: see `problem`.
    std::optional<Test> whole() {
        auto test = either();
        if (test && !isAtEnd())
            return refuse(u"something follows that does not belong there"_s);
        return test;
    }
    [[nodiscard]] const LogPredicate::Problem& problem() const { return problem_; }

private:
    static constexpr int mostLevels = 100;

    std::optional<Test> either() {
        auto left = both();
        while (left && (takes("||") || takesWord("OR"))) {
            auto right = both();
            if (!right)
                return std::nullopt;
            left = [a = std::move(*left), b = std::move(*right)](const Field& field) {
                return a(field) || b(field);
            };
        }
        return left;
    }

    std::optional<Test> both() {
        auto left = one();
        while (left && (takes("&&") || takesWord("AND"))) {
            auto right = one();
            if (!right)
                return std::nullopt;
            left = [a = std::move(*left), b = std::move(*right)](const Field& field) {
                return a(field) && b(field);
            };
        }
        return left;
    }

    std::optional<Test> one() {
        if (++level_ > mostLevels)
            return refuse(u"it is nested too deeply"_s);
        auto test = negation();
        --level_;
        return test;
    }

    std::optional<Test> negation() {
        if (takes("!") || takesWord("NOT")) {
            auto inner = one();
            if (inner)
                inner = [a = std::move(*inner)](const Field& field) { return !a(field); };
            return inner;
        }
        if (!takes("("))
            return comparison();
        auto inner = either();
        if (inner && !takes(")"))
            return refuse(u"a closing parenthesis is missing"_s);
        return inner;
    }

    std::optional<Test> comparison() {
        const QByteArray name = word();
        if (name.isEmpty())
            return refuse(u"the name of a field is expected"_s);
        const auto how = comparisonSign();
        if (!how)
            return refuse(u"==, !=, CONTAINS, BEGINSWITH or ENDSWITH is expected"_s);
        const bool folds = takes("[c]");
        const auto literal = quoted();
        if (!literal)
            return refuse(u"a text between double quotes is expected"_s);
        const QByteArray wanted = folds ? literal->toLower() : *literal;
        return Test([name, how = *how, folds, wanted](const Field& field) {
            const QByteArray value = field(name);
            return holds(how, folds ? value.toLower() : value, wanted);
        });
    }

    std::optional<Comparison> comparisonSign() {
        if (takes("=="))
            return Comparison::Equal;
        if (takes("!="))
            return Comparison::Unequal;
        if (takesWord("CONTAINS"))
            return Comparison::Contains;
        if (takesWord("BEGINSWITH"))
            return Comparison::BeginsWith;
        if (takesWord("ENDSWITH"))
            return Comparison::EndsWith;
        return std::nullopt;
    }

    std::optional<QByteArray> quoted() {
        skipBlanks();
        const qsizetype begin = at_;
        if (at_ >= text_.size() || text_[at_] != '"')
            return std::nullopt;
        QByteArray literal;
        for (++at_; at_ < text_.size() && text_[at_] != '"'; ++at_) {
            if (text_[at_] == '\\' && ++at_ >= text_.size())
                break;
            literal += text_[at_];
        }
        if (at_ >= text_.size()) {
            at_ = begin;
            return std::nullopt;
        }
        ++at_;
        return literal;
    }

    QByteArray word() {
        skipBlanks();
        const qsizetype begin = at_;
        while (at_ < text_.size() && isNameCharacter(text_[at_]))
            ++at_;
        return text_.sliced(begin, at_ - begin);
    }

    bool takesWord(const char* wanted) {
        const qsizetype begin = at_;
        if (word() == wanted)
            return true;
        at_ = begin;
        return false;
    }

    bool takes(QByteArrayView sign) {
        skipBlanks();
        if (!QByteArrayView(text_).sliced(at_).startsWith(sign))
            return false;
        at_ += sign.size();
        return true;
    }

    void skipBlanks() {
        while (at_ < text_.size() && QByteArrayView(" \t\r\n").contains(text_[at_]))
            ++at_;
    }

    bool isAtEnd() {
        skipBlanks();
        return at_ == text_.size();
    }

    std::nullopt_t refuse(const QString& why) {
        if (problem_.text.isEmpty()) {
            skipBlanks();
            problem_ = {why, at_ + 1};
        }
        return std::nullopt;
    }

    const QByteArray& text_;
    qsizetype at_ = 0;
    int level_ = 0;
    LogPredicate::Problem problem_;
};

}  // namespace

std::variant<LogPredicate, LogPredicate::Problem> LogPredicate::parsed(const QByteArray& text) {
    constexpr qsizetype longest = 64LL * 1024;
    if (text.size() > longest)
        return Problem{u"it is too long"_s, longest};
    PredicateParser parser(text);
    auto test = parser.whole();
    if (!test)
        return parser.problem();
    return LogPredicate(std::move(*test));
}

}  // namespace diagnostics
