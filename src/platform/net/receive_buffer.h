#pragma once

#include <QByteArray>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>

namespace platform {

class BlockPool;

/// Bytes received and not yet read, gathered into blocks that are handed out whole.
class ReceiveBuffer {
public:
    explicit ReceiveBuffer(std::shared_ptr<BlockPool> pool) : pool_(std::move(pool)) {}

    /// The length announced for all that will come: no more than that is set aside.
    void expect(std::uint64_t length) { expected_ = length; }
    void append(const char* bytes, std::size_t count);
    /// At most `maximum` bytes; a whole block without a copy if it fits. Empty: there are none.
    [[nodiscard]] QByteArray take(qsizetype maximum);
    void clear();

    [[nodiscard]] qsizetype size() const { return size_; }
    [[nodiscard]] bool isEmpty() const { return size_ == 0; }
    [[nodiscard]] bool hasWholeBlock() const { return !whole_.empty(); }

private:
    void startBlock();
    [[nodiscard]] QByteArray takeUnfinished();
    [[nodiscard]] QByteArray takeWhole();

    std::shared_ptr<BlockPool> pool_;
    std::deque<QByteArray> whole_;
    qsizetype readOfFirst_ = 0;  ///< Bytes of the first whole block that are gone already.
    QByteArray unfinished_;
    char* cursor_ = nullptr;  ///< Where the next byte goes, within `unfinished_`.
    qsizetype room_ = 0;      ///< Bytes left behind `cursor_`.
    qsizetype size_ = 0;
    std::uint64_t total_ = 0;
    std::optional<std::uint64_t> expected_;
};

}  // namespace platform
