#include "structured/json/json_reader.h"

#include <QCoreApplication>
#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>

#include "structured/json/bounds.h"
#include "structured/json/json_tree_builder.h"
#include "structured/text_view/text_position.h"

namespace structured {

namespace {

/// Hands a text to the parser and keeps count of what it has taken, so that an event can tell
/// where it arose.
class CountingIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    CountingIterator(const char* at, std::size_t* count) : at_(at), count_(count) {}

    reference operator*() const { return *at_; }
    CountingIterator& operator++() {
        ++at_;
        ++*count_;
        return *this;
    }
    bool operator!=(const CountingIterator& other) const { return at_ != other.at_; }
    bool operator==(const CountingIterator& other) const { return at_ == other.at_; }

private:
    const char* at_;
    std::size_t* count_;
};

JsonResult refused(const QString& text, TextPosition position = {0, 0}) {
    return {{}, {text, position.line, position.column}};
}

bool isOfWord(char byte) {
    return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= 'a' && byte <= 'z') || byte == '+' || byte == '-' || byte == '.';
}

/// Whether a backslash takes a quotation mark its meaning.
bool isEscaped(QByteArrayView utf8, qsizetype quote) {
    qsizetype start = quote;
    while (start > 0 && utf8[start - 1] == '\\')
        --start;
    return (quote - start) % 2 != 0;
}

/// Where the word, string or mark begins whose last byte is at `last`.
qsizetype startOfToken(QByteArrayView utf8, qsizetype last) {
    qsizetype start = last;
    if (utf8[last] == '"') {
        do {
            start = std::max(start - 1, qsizetype{0});
        } while (start > 0 && (utf8[start] != '"' || isEscaped(utf8, start)));
    } else if (isOfWord(utf8[last])) {
        while (start > 0 && isOfWord(utf8[start - 1]))
            --start;
    }
    return start;
}

JsonResult resultOf(const JsonTreeBuilder& builder, const QByteArray& utf8) {
    const auto& refusal = builder.refusal();
    if (!refusal)
        return {builder.root(), {}};
    const qsizetype last = std::max(static_cast<qsizetype>(refusal->taken) - 1, qsizetype{0});
    const bool isInside = last < utf8.size();
    return refused(
        refusal->text,
        textPosition(utf8, refusal->isAboutToken && isInside ? startOfToken(utf8, last) : last));
}

}  // namespace

JsonResult readJson(const QByteArray& utf8) {
    if (utf8.size() > maximumTextBytes)
        return refused(QCoreApplication::translate("Orlop", "The text is larger than 64 MiB."));
    // The parser would take it for the end of the text.
    if (const qsizetype zero = utf8.indexOf('\0'); zero >= 0) {
        return refused(QCoreApplication::translate("Orlop", "There is a null character here."),
                       textPosition(utf8, zero));
    }
    std::size_t progress = 0;
    JsonTreeBuilder builder(progress);
    try {
        nlohmann::json::sax_parse(CountingIterator(utf8.constBegin(), &progress),
                                  CountingIterator(utf8.constEnd(), &progress), &builder);
    } catch (const std::exception& exception) {
        return refused(QCoreApplication::translate("Orlop", "The text could not be read: %1")
                           .arg(QString::fromUtf8(exception.what())),
                       textPosition(utf8, static_cast<qsizetype>(progress)));
    }
    return resultOf(builder, utf8);
}

}  // namespace structured
