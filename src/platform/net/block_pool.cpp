#include "platform/net/block_pool.h"

#include <algorithm>
#include <iterator>

namespace platform {

QByteArray BlockPool::take() {
    // The one that was lent last is the likeliest to lie in a processor's cache still.
    const auto last = std::find_if(lent_.rbegin(), lent_.rend(),
                                   [](const QByteArray& block) { return block.isDetached(); });
    if (last == lent_.rend())
        return {blockSize, Qt::Uninitialized};
    const auto free = std::prev(last.base());
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
