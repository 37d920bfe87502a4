#pragma once

#include <QByteArray>
#include <deque>

namespace platform {

/// Blocks of one size that go round: what a receiver has let go of is filled again, whichever
/// thread let it go, because fresh memory costs more than the bytes written into it.
///
/// One thread; receivers may drop their blocks on any.
class BlockPool {
public:
    static constexpr qsizetype blockSize = 256LL * 1024;

    /// A block of `blockSize` bytes of any content.
    [[nodiscard]] QByteArray take();
    /// Remembers a block that is about to be handed out.
    void lend(const QByteArray& block);
    void clear() { lent_.clear(); }

private:
    static constexpr std::size_t mostBlocks = 64;

    std::deque<QByteArray> lent_;
};

}  // namespace platform
