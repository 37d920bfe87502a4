#pragma once

#include <QByteArray>
#include <optional>

namespace browser {

/// What browsers take from a host at once, and what we take from them.
inline constexpr qsizetype maximumMessageBytes = qsizetype{1} << 20;

/// Cuts what a browser writes into messages: a length of 32 bits in the machine's order, then as
/// many bytes (developer.chrome.com, "Native messaging protocol").
class MessageCutter {
public:
    void append(QByteArrayView bytes) { bytes_.append(bytes); }
    /// The next whole message. Nothing: there is none yet, or none will come since `isBroken`.
    [[nodiscard]] std::optional<QByteArray> next();
    /// A message was announced that is empty or too long; where the next one begins is unknown.
    [[nodiscard]] bool isBroken() const { return isBroken_; }

private:
    QByteArray bytes_;
    bool isBroken_ = false;
};

/// The message with its length before it. Nothing: too long.
[[nodiscard]] std::optional<QByteArray> framedMessage(const QByteArray& message);

}  // namespace browser
