#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <array>
#include <cstddef>
#include <span>

namespace structured {

/// A JSON object without objects or arrays in it, as a log has one for each line: read where it
/// stands, without a tree, since there may be hundreds of thousands of them.
class FlatObject {
public:
    struct Member {
        /// Between the quotes, escapes as they are.
        QByteArrayView key;
        /// As it is written, a string with its quotes.
        QByteArrayView value;
    };
    static constexpr std::size_t mostMembers = 24;

    /// Reads the object that `text` begins with, after white space. Answers how many bytes that
    /// were; 0: there is no such object, or it holds more members than `mostMembers`. The members
    /// are stretches of `text`, which must outlive them. Any thread.
    [[nodiscard]] qsizetype read(QByteArrayView text);

    [[nodiscard]] std::span<const Member> members() const { return {members_.data(), count_}; }
    /// As it is written; empty: there is no such member. `key` needs no escapes.
    [[nodiscard]] QByteArrayView value(QByteArrayView key) const;

private:
    std::array<Member, mostMembers> members_;
    std::size_t count_ = 0;
};

/// What a value as it is written means: of a string its UTF-8, of another its own text. An escape
/// that means nothing stands for U+FFFD.
[[nodiscard]] QByteArray decodedJsonValue(QByteArrayView written);

/// The same as text.
[[nodiscard]] QString decodedJsonText(QByteArrayView written);

/// How many bytes of white space `text` begins with.
[[nodiscard]] qsizetype jsonBlanks(QByteArrayView text);

}  // namespace structured
