#include "platform/net/http_challenge.h"

#include "platform/text/ascii.h"

namespace platform {

namespace {

constexpr std::size_t mostChallenges = 32;
constexpr qsizetype mostParameters = 32;

bool isBlank(QChar c) {
    return c == u' ' || c == u'\t';
}

bool isTokenCharacter(QChar c) {
    return isAsciiAlphanumeric(c) || QStringView(u"!#$%&'*+-.^_`|~").contains(c);
}

bool isToken68Character(QChar c) {
    return isAsciiAlphanumeric(c) || QStringView(u"-._~+/").contains(c);
}

/// Reads one field from its beginning to its end.
class FieldReader {
public:
    FieldReader(QStringView text, std::vector<HTTPChallenge>& challenges)
        : text_(text), challenges_(challenges) {}

    void read() {
        while (!isAtEnd() && challenges_.size() <= mostChallenges) {
            if (isBlank(text_[at_]) || text_[at_] == u',')
                ++at_;
            else if (!readItem())
                skipItem();
        }
    }

private:
    [[nodiscard]] bool isAtEnd() const { return at_ >= text_.size(); }
    [[nodiscard]] bool isAt(QChar c) const { return !isAtEnd() && text_[at_] == c; }

    template <typename Predicate>
    QStringView take(Predicate isWanted) {
        const qsizetype start = at_;
        while (!isAtEnd() && isWanted(text_[at_]))
            ++at_;
        return text_.sliced(start, at_ - start);
    }

    /// A challenge's beginning, or a parameter of the one that was begun last.
    bool readItem() {
        const QString name = take(isTokenCharacter).toString();
        if (name.isEmpty())
            return false;
        const bool hasBlanks = !take(isBlank).isEmpty();
        if (isAt(u'='))
            return begun_ && readParameter(name);
        challenges_.push_back({name, {}, {}});
        begun_ = true;
        if (hasBlanks)
            readToken68();
        return true;
    }

    /// Such a token is alone; what only looks like one is the name of a parameter.
    void readToken68() {
        const qsizetype start = at_;
        take(isToken68Character);
        take([](QChar c) { return c == u'='; });
        const qsizetype end = at_;
        take(isBlank);
        if (end > start && (isAtEnd() || isAt(u',')))
            challenges_.back().token68 = text_.sliced(start, end - start).toString();
        else
            at_ = start;
    }

    bool readParameter(const QString& name) {
        ++at_;
        take(isBlank);
        bool isWhole = true;
        const QString value = isAt(u'"') ? quoted(isWhole) : take(isTokenCharacter).toString();
        auto& parameters = challenges_.back().parameters;
        const QString key = name.toLower();
        if (isWhole && !parameters.contains(key) && parameters.size() < mostParameters)
            parameters.insert(key, value);
        return isWhole;
    }

    QString quoted(bool& isWhole) {
        QString value;
        for (++at_; !isAtEnd() && text_[at_] != u'"'; ++at_) {
            if (text_[at_] == u'\\' && at_ + 1 < text_.size())
                ++at_;
            value += text_[at_];
        }
        isWhole = isAt(u'"');
        ++at_;
        return value;
    }

    void skipItem() {
        bool isWhole = true;
        while (!isAtEnd() && text_[at_] != u',') {
            if (text_[at_] == u'"')
                quoted(isWhole);
            else
                ++at_;
        }
    }

    QStringView text_;
    std::vector<HTTPChallenge>& challenges_;
    qsizetype at_ = 0;
    bool begun_ = false;
};

}  // namespace

std::vector<HTTPChallenge> challengesFromFields(const QStringList& fields) {
    std::vector<HTTPChallenge> challenges;
    for (const QString& field : fields)
        FieldReader(field, challenges).read();
    if (challenges.size() > mostChallenges)
        challenges.resize(mostChallenges);
    return challenges;
}

}  // namespace platform
