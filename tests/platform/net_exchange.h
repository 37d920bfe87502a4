#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "platform/base/clock.h"
#include "platform/base/timer.h"
#include "platform/net/http_read_stream.h"
#include "platform/net/network_loop.h"

namespace net_test {

/// A network loop on the test's own thread.
struct Loop {
    platform::SystemClock clock;
    platform::NetworkLoop loop{clock};

    /// False, and a failure, when 20 seconds of real time run out.
    bool runUntil(const std::function<bool()>& done) {
        bool isLate = false;
        platform::Timer late(loop.calls());
        late.start(20.0, [&isLate] { isLate = true; });
        loop.runUntil([&] { return isLate || done(); });
        EXPECT_FALSE(isLate) << "nothing came for 20 seconds";
        return !isLate;
    }
    /// Runs turns for a while, for what must not happen.
    void runFor(platform::Seconds seconds) {
        bool isOver = false;
        platform::Timer end(loop.calls());
        end.start(seconds, [&isOver] { isOver = true; });
        loop.runUntil([&isOver] { return isOver; });
    }
};

inline platform::HTTPRequestMessage message(const QString& url,
                                            const QString& method = QStringLiteral("GET")) {
    platform::HTTPRequestMessage result;
    result.method = method;
    result.url = platform::Url::parse(url).value();
    return result;
}

/// Gives its bytes in pieces, with a pause after some of them.
class Source final : public platform::HTTPBodySource {
public:
    explicit Source(QByteArray given) : bytes(std::move(given)) {}

    Piece read(char* buffer, qsizetype maximum) override {
        ++readings;
        if (failsAt >= 0 && at >= failsAt)
            return {State::Failed};
        if (pausesEvery > 0 && readings % pausesEvery == 0)
            return {State::NotNow};
        const qsizetype count = std::min({maximum, pieceSize, bytes.size() - at});
        std::copy_n(bytes.constData() + at, count, buffer);
        at += count;
        return count == 0 ? Piece{State::End} : Piece{State::Data, count};
    }
    bool rewind() override {
        at = 0;
        return true;
    }

    QByteArray bytes;
    qsizetype pieceSize = 1 << 20;
    int pausesEvery = 0;
    qsizetype failsAt = -1;
    qsizetype at = 0;
    int readings = 0;
};

/// A stream and what it has told, read to its end as it comes.
class Exchange {
public:
    Exchange(Loop& loop, platform::HTTPRequestMessage request,
             platform::HTTPBodySource* source = nullptr, std::uint64_t length = 0)
        : stream(std::make_unique<platform::HTTPReadStream>(loop.loop, std::move(request), source,
                                                            length)),
          loop_(loop) {
        stream->setClient([this](platform::HTTPReadStream::Event event) { hear(event); });
    }
    Exchange(Loop& loop, const QString& url) : Exchange(loop, message(url)) {}

    /// Opens it and waits for the end.
    Exchange& run() {
        EXPECT_TRUE(stream->open());
        loop_.runUntil([this] { return isOver(); });
        return *this;
    }
    [[nodiscard]] bool isOver() const { return hasEnded || hasFailed; }
    [[nodiscard]] int status() const {
        return stream->responseHead() ? stream->responseHead()->statusCode : 0;
    }
    /// "domain code", empty without an error.
    [[nodiscard]] std::string failure() const {
        const auto& error = stream->error();
        return error ? error->domain.toStdString() + ' ' + std::to_string(error->code) : "";
    }

    std::unique_ptr<platform::HTTPReadStream> stream;
    qsizetype readSize = 1 << 20;
    /// In place of reading.
    std::function<void()> onBytes;
    QByteArray body;
    qsizetype largestPiece = 0;
    int events = 0;
    bool hasEnded = false, hasFailed = false;

private:
    void hear(platform::HTTPReadStream::Event event) {
        EXPECT_FALSE(isOver()) << "an event after the last";
        ++events;
        hasEnded = event == platform::HTTPReadStream::Event::End;
        hasFailed = event == platform::HTTPReadStream::Event::Error;
        if (event != platform::HTTPReadStream::Event::BytesAvailable)
            return;
        EXPECT_TRUE(stream->hasBytesAvailable());
        EXPECT_TRUE(stream->responseHead());
        if (onBytes)
            onBytes();
        else
            read();
    }

public:
    void read() {
        const QByteArray piece = stream->read(readSize);
        EXPECT_LE(piece.size(), readSize);
        largestPiece = std::max(largestPiece, piece.size());
        body += piece;
    }

private:
    Loop& loop_;
};

}  // namespace net_test
