#include "platform/text/regular_expression.h"

#include <unicode/regex.h>
#include <unicode/utext.h>

#include <QtGlobal>
#include <chrono>

namespace platform {

struct RegularExpression::Compiled {
    std::unique_ptr<icu::RegexPattern> pattern;
    int groupCount = 0;
};

namespace {

using SteadyClock = std::chrono::steady_clock;

uint32_t icuFlags(unsigned options) {
    using Option = RegularExpression::Option;
    const auto has = [options](Option option) {
        return (options & static_cast<unsigned>(option)) != 0;
    };
    uint32_t flags = 0;
    if (!has(Option::CaseSensitive))
        flags |= UREGEX_CASE_INSENSITIVE;
    if (has(Option::DotMatchesAll))
        flags |= UREGEX_DOTALL;
    if (has(Option::Multiline))
        flags |= UREGEX_MULTILINE;
    return flags;
}

/// The terms of ICU for a string that stays ours.
icu::UnicodeString aliasOf(const QString& text) {
    return {false, reinterpret_cast<const char16_t*>(text.utf16()),
            static_cast<int32_t>(text.size())};
}

std::unique_ptr<icu::RegexPattern> compiledPattern(const QString& pattern, unsigned options) {
    UErrorCode status = U_ZERO_ERROR;
    UParseError where{};
    std::unique_ptr<icu::RegexPattern> compiled(
        icu::RegexPattern::compile(aliasOf(pattern), icuFlags(options), where, status));
    return U_SUCCESS(status) ? std::move(compiled) : nullptr;
}

/// One run of a pattern over a subject, which it does not copy.
class Run {
public:
    Run(const icu::RegexPattern& pattern, const QString& subject, Seconds timeLimit,
        std::stop_token stop)
        : stop_(std::move(stop)) {
        matcher_.reset(pattern.matcher(status_));
        utext_openUChars(&text_, reinterpret_cast<const char16_t*>(subject.utf16()), subject.size(),
                         &status_);
        if (U_FAILURE(status_))
            return;
        matcher_->reset(&text_);
        if (timeLimit <= 0)
            return;
        deadline_ = SteadyClock::now() + std::chrono::duration_cast<SteadyClock::duration>(
                                             std::chrono::duration<double>(timeLimit));
        matcher_->setMatchCallback(mayGoOnMatching, this, status_);
        matcher_->setFindProgressCallback(mayGoOnSearching, this, status_);
    }
    ~Run() { utext_close(&text_); }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    [[nodiscard]] bool findFrom(qsizetype start) {
        return U_SUCCESS(status_) && matcher_->find(int64_t{start}, status_) && U_SUCCESS(status_);
    }
    [[nodiscard]] bool findNext() {
        return U_SUCCESS(status_) && matcher_->find(status_) && U_SUCCESS(status_);
    }
    [[nodiscard]] RegularExpression::Match match();
    [[nodiscard]] std::optional<QString> replaceAll(const QString& replacement);
    [[nodiscard]] bool timedOut() const { return timedOut_; }

private:
    static UBool mayGoOnMatching(const void* self, int32_t) {
        return static_cast<UBool>(static_cast<Run*>(const_cast<void*>(self))->isInTime());
    }
    /// Asked at every position of the subject, where a look at the clock would cost more than the
    /// search itself.
    static UBool mayGoOnSearching(const void* self, int64_t position) {
        constexpr int64_t positionsBetweenLooks = 64;
        const bool looks = position % positionsBetweenLooks == 0;
        return looks ? mayGoOnMatching(self, 0) : static_cast<UBool>(true);
    }
    bool isInTime() {
        timedOut_ = timedOut_ || stop_.stop_requested() || SteadyClock::now() >= deadline_;
        return !timedOut_;
    }

    UErrorCode status_ = U_ZERO_ERROR;
    UText text_ = UTEXT_INITIALIZER;
    std::unique_ptr<icu::RegexMatcher> matcher_;
    SteadyClock::time_point deadline_;
    std::stop_token stop_;
    bool timedOut_ = false;
};

RegularExpression::Match Run::match() {
    RegularExpression::Match match;
    const int count = matcher_->groupCount();
    match.groups.reserve(static_cast<std::size_t>(count) + 1);
    for (int group = 0; group <= count; ++group) {
        const qsizetype start = matcher_->start64(group, status_);
        if (start < 0)
            match.groups.emplace_back();
        else
            match.groups.push_back({{start, matcher_->end64(group, status_) - start}});
    }
    return match;
}

std::optional<QString> Run::replaceAll(const QString& replacement) {
    if (U_FAILURE(status_))
        return std::nullopt;
    const icu::UnicodeString result = matcher_->replaceAll(aliasOf(replacement), status_);
    // A search that was stopped counts as the end of the matches there, not as an error.
    if (U_FAILURE(status_) || timedOut_)
        return std::nullopt;
    return QString(reinterpret_cast<const QChar*>(result.getBuffer()), result.length());
}

}  // namespace

std::optional<RegularExpression> RegularExpression::compile(const QString& pattern,
                                                            unsigned options) {
    auto compiled = std::make_shared<Compiled>();
    compiled->pattern = compiledPattern(pattern, options);
    if (!compiled->pattern)
        return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::RegexMatcher> matcher(compiled->pattern->matcher(status));
    compiled->groupCount = matcher ? matcher->groupCount() : 0;
    return RegularExpression(std::shared_ptr<const Compiled>(std::move(compiled)));
}

RegularExpression::RegularExpression(std::shared_ptr<const Compiled> compiled)
    : compiled_(std::move(compiled)) {}

RegularExpression::RegularExpression(const QString& pattern, unsigned options) {
    const std::optional<RegularExpression> compiled = compile(pattern, options);
    if (!compiled)
        qFatal("malformed regular expression: %s", qUtf8Printable(pattern));
    compiled_ = compiled->compiled_;
}

void RegularExpression::setTimeLimit(Seconds limit) {
    timeLimit_ = limit;
}

void RegularExpression::setStopToken(std::stop_token stop) {
    stop_ = std::move(stop);
}

bool RegularExpression::timedOut() const {
    return timedOut_;
}

std::optional<RegularExpression::Match> RegularExpression::firstMatch(const QString& subject,
                                                                      qsizetype from) const {
    Run run(*compiled_->pattern, subject, timeLimit_, stop_);
    const bool found = run.findFrom(from);
    timedOut_ = run.timedOut();
    return found ? std::optional(run.match()) : std::nullopt;
}

std::vector<RegularExpression::Match> RegularExpression::matches(const QString& subject) const {
    std::vector<Match> found;
    forEachMatch(subject, [&found](const Match& match) {
        found.push_back(match);
        return true;
    });
    if (timedOut_)
        found.clear();
    return found;
}

void RegularExpression::forEachMatch(const QString& subject,
                                     const std::function<bool(const Match&)>& visit) const {
    Run run(*compiled_->pattern, subject, timeLimit_, stop_);
    bool isWanted = true;
    while (isWanted && run.findNext())
        isWanted = visit(run.match());
    timedOut_ = run.timedOut();
}

std::optional<QString> RegularExpression::firstCapture(const QString& subject, int group) const {
    const std::optional<Match> match = firstMatch(subject);
    if (!match || group < 0 || group >= static_cast<int>(match->groups.size()))
        return std::nullopt;
    const std::optional<Range>& range = match->groups[static_cast<std::size_t>(group)];
    return range ? std::optional(subject.mid(range->start, range->length)) : std::nullopt;
}

std::optional<QString> RegularExpression::replaceAll(const QString& subject,
                                                     const QString& replacement) const {
    Run run(*compiled_->pattern, subject, timeLimit_, stop_);
    std::optional<QString> result = run.replaceAll(replacement);
    timedOut_ = run.timedOut();
    return result;
}

int RegularExpression::groupCount() const {
    return compiled_->groupCount;
}

}  // namespace platform
