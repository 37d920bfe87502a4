#include "platform/net/block_pool.h"

#include <algorithm>

namespace platform {

QByteArray BlockPool::take() {
    const auto free = std::find_if(lent_.begin(), lent_.end(),
                                   [](const QByteArray& block) { return block.isDetached(); });
    if (free == lent_.end())
        return {blockSize, Qt::Uninitialized};
    // Taking and dropping a reference orders the receiver's last look at the bytes before our
    // writing; `isDetached` alone orders nothing.
    { const QByteArray synchronised = *free; }
    QByteArray block = std::move(*free);
    lent_.erase(free);
    block.resize(blockSize);
    return block;
}

void BlockPool::lend(const QByteArray& block) {
    if (block.capacity() < blockSize)
        return;
    if (lent_.size() == mostBlocks)
        lent_.pop_front();
    lent_.push_back(block);
}

}  // namespace platform
