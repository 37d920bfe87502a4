// One large body from a loopback server into a file in memory: by the read stream, whose blocks
// the main thread writes, and by a plain libcurl transfer that writes what it is given.
//
// ORLOP_BENCH_URL names another server's file to fetch in place of our own.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/sendfile.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <deque>
#include <string>

#include "platform/base/clock.h"
#include "platform/net/curl_handles.h"
#include "platform/net/http_read_stream.h"
#include "platform/net/network_loop.h"

namespace {

constexpr long long bodyLength = 2LL << 30;

/// A process of its own, so that its work does not count as ours. Sends the same bytes from the
/// page cache to whoever connects.
class LoopbackServer {
public:
    LoopbackServer() {
        const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        if (::bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
            ::listen(listener, SOMAXCONN) != 0 ||
            ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) != 0)
            std::abort();
        port_ = ntohs(address.sin_port);
        process_ = ::fork();
        if (process_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGTERM);
            serve(listener);
        }
        ::close(listener);
    }
    ~LoopbackServer() {
        ::kill(process_, SIGTERM);
        ::waitpid(process_, nullptr, 0);
    }
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    [[nodiscard]] std::string url() const {
        return "http://127.0.0.1:" + std::to_string(port_) + "/";
    }

private:
    [[noreturn]] static void serve(int listener) {
        constexpr std::size_t pieceSize = 64 << 20;
        const int piece = ::memfd_create("piece", 0);
        const std::string content(pieceSize, 'x');
        if (::write(piece, content.data(), content.size()) != static_cast<ssize_t>(pieceSize))
            std::abort();
        const std::string head =
            "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(bodyLength) + "\r\n\r\n";
        for (;;) {
            const int client = ::accept(listener, nullptr, nullptr);
            std::array<char, 4096> request{};
            long long left = ::recv(client, request.data(), request.size(), 0) > 0 ? bodyLength : 0;
            ::send(client, head.data(), head.size(), MSG_NOSIGNAL | MSG_MORE);
            off_t offset = 0;
            while (left > 0) {
                const ssize_t sent = ::sendfile(client, piece, &offset,
                                                pieceSize - static_cast<std::size_t>(offset));
                if (sent <= 0)
                    break;
                left -= sent;
                offset %= static_cast<off_t>(pieceSize);
            }
            ::close(client);
        }
    }

    int port_ = 0;
    pid_t process_ = -1;
};

std::string url() {
    if (const char* const given = std::getenv("ORLOP_BENCH_URL"))
        return given;
    static const LoopbackServer server;
    return server.url();
}

/// In memory, or where ORLOP_BENCH_FILE says. It outlives the measurement, since to free its pages
/// costs about as much as to fill them.
int targetFile() {
    static const int file = [] {
        const char* const path = std::getenv("ORLOP_BENCH_FILE");
        return path ? ::open(path, O_CREAT | O_WRONLY | O_CLOEXEC, 0600)
                    : ::memfd_create("target", MFD_CLOEXEC);
    }();
    return file;
}

class Target {
public:
    void write(const char* bytes, std::size_t count) {
        if (::pwrite(targetFile(), bytes, count, static_cast<off_t>(size_)) !=
            static_cast<ssize_t>(count))
            std::abort();
        size_ += count;
    }
    [[nodiscard]] std::size_t size() const { return size_; }

private:
    std::size_t size_ = 0;
};

/// Blocks on their way from the network thread to the main thread, within bounds.
class Handover {
public:
    /// False: the sender ought to stop for now.
    bool give(QByteArray block) {
        const std::lock_guard guard(lock_);
        inFlight_ += block.size();
        blocks_.push_back(std::move(block));
        isWaiting_ ? changed_.notify_one() : void();
        return inFlight_ < most;
    }
    void end() {
        const std::lock_guard guard(lock_);
        isOver_ = true;
        changed_.notify_one();
    }
    /// All there is; none at the end.
    [[nodiscard]] std::deque<QByteArray> take() {
        std::unique_lock guard(lock_);
        isWaiting_ = true;
        changed_.wait(guard, [this] { return isOver_ || !blocks_.empty(); });
        isWaiting_ = false;
        return std::exchange(blocks_, {});
    }
    /// True: the sender may go on.
    bool settle(qsizetype count) {
        const std::lock_guard guard(lock_);
        const bool wasFull = inFlight_ >= most;
        inFlight_ -= count;
        return wasFull && inFlight_ < most;
    }

private:
    static constexpr qsizetype most = 4 << 20;
    std::mutex lock_;
    std::condition_variable changed_;
    std::deque<QByteArray> blocks_;
    qsizetype inFlight_ = 0;
    bool isOver_ = false;
    bool isWaiting_ = false;
};

std::size_t fetchByStream(const std::string& address) {
    using platform::HTTPReadStream;
    platform::SystemClock clock;
    Handover handover;
    std::unique_ptr<HTTPReadStream> stream;
    platform::NetworkThread network(clock);  // Ends before what its calls refer to.
    network.loop().calls().post([&] {
        platform::HTTPRequestMessage message;
        message.method = QStringLiteral("GET");
        message.url = platform::Url::parse(QString::fromStdString(address)).value();
        stream = std::make_unique<HTTPReadStream>(network.loop(), message);
        stream->setClient([&](HTTPReadStream::Event event) {
            if (event != HTTPReadStream::Event::BytesAvailable)
                handover.end();
            else if (!handover.give(stream->read(256 * 1024)))
                stream->unschedule();
        });
        stream->open();
    });
    Target file;
    for (auto blocks = handover.take(); !blocks.empty(); blocks = handover.take()) {
        while (!blocks.empty()) {
            const QByteArray block = std::move(blocks.front());
            blocks.pop_front();
            file.write(block.constData(), static_cast<std::size_t>(block.size()));
            if (handover.settle(block.size()))
                network.loop().calls().post([&stream] { stream->schedule(); });
        }
    }
    network.loop().calls().post([&stream] { stream.reset(); });
    return file.size();
}

std::size_t fetchByCurl(const std::string& address) {
    Target file;
    const platform::CurlEasy easy(curl_easy_init(), &curl_easy_cleanup);
    curl_write_callback write = [](char* bytes, size_t, size_t count, void* target) {
        static_cast<Target*>(target)->write(bytes, count);
        return count;
    };
    curl_easy_setopt(easy.get(), CURLOPT_URL, address.c_str());
    curl_easy_setopt(easy.get(), CURLOPT_WRITEFUNCTION, write);
    curl_easy_setopt(easy.get(), CURLOPT_WRITEDATA, &file);
    curl_easy_perform(easy.get());
    return file.size();
}

void measure(benchmark::State& state, std::size_t (*fetch)(const std::string&)) {
    const std::string address = url();
    std::size_t bytes = 0;
    for ([[maybe_unused]] auto _ : state)
        bytes += fetch(address);
    if (bytes < static_cast<std::size_t>(state.iterations()))
        state.SkipWithError("nothing was received");
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
}

BENCHMARK_CAPTURE(measure, stream, fetchByStream)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(measure, curl, fetchByCurl)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
