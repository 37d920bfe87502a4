#include "browser/native_messages.h"

#include <cstring>

namespace browser {

namespace {

constexpr qsizetype lengthBytes = sizeof(quint32);

}  // namespace

std::optional<QByteArray> MessageCutter::next() {
    if (isBroken_ || bytes_.size() < lengthBytes)
        return std::nullopt;
    quint32 length = 0;
    std::memcpy(&length, bytes_.constData(), sizeof length);
    if (length == 0 || length > maximumMessageBytes) {
        isBroken_ = true;
        bytes_.clear();
        return std::nullopt;
    }
    if (bytes_.size() - lengthBytes < qsizetype{length})
        return std::nullopt;
    const QByteArray message = bytes_.sliced(lengthBytes, length);
    bytes_.remove(0, lengthBytes + length);
    return message;
}

std::optional<QByteArray> framedMessage(const QByteArray& message) {
    if (message.size() > maximumMessageBytes)
        return std::nullopt;
    const auto length = static_cast<quint32>(message.size());
    return QByteArray(reinterpret_cast<const char*>(&length), sizeof length) + message;
}

}  // namespace browser
