#include "platform/net/receive_buffer.h"

#include <algorithm>
#include <cstring>

#include "platform/net/block_pool.h"

namespace platform {

namespace {

/// Long copies by the C library use a string instruction that runs ten times slower on some
/// processors when target and source lie at unlucky distances; copies of a fixed short length
/// become plain loads and stores.
void copyInShortPieces(char* target, const char* source, qsizetype count) {
    constexpr qsizetype pieceSize = 64;
    for (; count >= pieceSize; count -= pieceSize) {
        std::memcpy(target, source, pieceSize);
        target += pieceSize;
        source += pieceSize;
    }
    std::memcpy(target, source, static_cast<std::size_t>(count));
}

}  // namespace

void ReceiveBuffer::append(const char* bytes, std::size_t count) {
    auto left = static_cast<qsizetype>(count);
    size_ += left;
    while (left > 0) {
        if (room_ == 0)
            startBlock();
        const qsizetype piece = std::min(left, room_);
        copyInShortPieces(cursor_, bytes, piece);
        total_ += static_cast<std::uint64_t>(piece);
        cursor_ += piece;
        bytes += piece;
        left -= piece;
        room_ -= piece;
        if (room_ == 0)
            whole_.push_back(std::exchange(unfinished_, {}));
    }
}

void ReceiveBuffer::startBlock() {
    constexpr std::uint64_t smallestBlock = 16UL * 1024;
    constexpr auto largestBlock = static_cast<std::uint64_t>(BlockPool::blockSize);
    // Without a length, blocks grow with what has come; with one, nothing is set aside in vain.
    std::uint64_t size = std::clamp(total_, smallestBlock, largestBlock);
    if (expected_)
        size =
            std::clamp<std::uint64_t>(*expected_ - std::min(*expected_, total_), 1, largestBlock);
    room_ = static_cast<qsizetype>(size);
    unfinished_ = size == largestBlock ? pool_->take() : QByteArray(room_, Qt::Uninitialized);
    cursor_ = unfinished_.data();
}

QByteArray ReceiveBuffer::takeUnfinished() {
    const qsizetype filled = unfinished_.size() - room_;
    if (filled < unfinished_.size() / 4) {
        QByteArray copy(unfinished_.constData(), filled);
        cursor_ -= filled;
        room_ += filled;
        return copy;
    }
    unfinished_.truncate(filled);
    room_ = 0;
    return std::exchange(unfinished_, {});
}

QByteArray ReceiveBuffer::takeWhole() {
    QByteArray block = std::move(whole_.front());
    whole_.pop_front();
    readOfFirst_ = 0;
    pool_->lend(block);
    return block;
}

QByteArray ReceiveBuffer::take(qsizetype maximum) {
    if (isEmpty() || maximum <= 0)
        return {};
    if (whole_.empty())
        whole_.push_back(takeUnfinished());
    const QByteArray& first = whole_.front();
    const qsizetype available = first.size() - readOfFirst_;
    const qsizetype count = std::min(available, maximum);
    size_ -= count;
    if (readOfFirst_ == 0 && count == first.size())
        return takeWhole();
    QByteArray piece(first.constData() + readOfFirst_, count);
    readOfFirst_ += count;
    if (count == available)
        static_cast<void>(takeWhole());
    return piece;
}

void ReceiveBuffer::clear() {
    whole_.clear();
    unfinished_ = {};
    readOfFirst_ = room_ = size_ = 0;
}

}  // namespace platform
