#include "proxy_script/name_lookup.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <memory>

namespace proxy_script {

namespace {

constexpr char separator = '\n';
constexpr std::size_t longestName = 253;
/// Asks for the own address; no host is called that.
const std::string ownAddressQuestion = "?";
/// In front of a question, asks for all addresses; no name begins like that.
constexpr char allOfThem = ' ';
constexpr char betweenAddresses = ';';
constexpr int mostAddresses = 32;
/// Room for an answer of so many.
constexpr std::size_t longestAnswer = NI_MAXHOST + mostAddresses * INET6_ADDRSTRLEN;

std::string numericAddress(const sockaddr* address, socklen_t length) {
    char text[NI_MAXHOST] = "";
    if (getnameinfo(address, length, text, sizeof text, nullptr, 0, NI_NUMERICHOST) != 0)
        return {};
    return text;
}

using Addresses = std::unique_ptr<addrinfo, decltype(&freeaddrinfo)>;

Addresses addressesOf(const std::string& host, int family, int flags) {
    addrinfo hints{};
    hints.ai_family = family;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = flags;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), nullptr, &hints, &found) != 0)
        found = nullptr;
    return Addresses(found, &freeaddrinfo);
}

std::string lookUp(const std::string& host) {
    for (const int family : {AF_INET, AF_INET6}) {
        if (const Addresses found = addressesOf(host, family, 0))
            return numericAddress(found->ai_addr, found->ai_addrlen);
    }
    return {};
}

std::string lookUpAll(const std::string& host) {
    std::string list;
    const Addresses found = addressesOf(host, AF_UNSPEC, 0);
    int count = 0;
    for (const addrinfo* each = found.get(); each != nullptr && count < mostAddresses;
         each = each->ai_next, ++count)
        list += (count > 0 ? std::string(1, betweenAddresses) : std::string()) +
                numericAddress(each->ai_addr, each->ai_addrlen);
    return list;
}

/// Connecting a datagram socket sends nothing; it only chooses a way.
std::string sourceAddressTowards(const std::string& elsewhere) {
    const Addresses target = addressesOf(elsewhere, AF_UNSPEC, AI_NUMERICHOST);
    if (!target)
        return {};
    const int probe = socket(target->ai_family, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_storage source{};
    socklen_t length = sizeof source;
    auto* const address = reinterpret_cast<sockaddr*>(&source);
    std::string text;
    // The port plays no part, but 0 is refused by some.
    reinterpret_cast<sockaddr_in*>(target->ai_addr)->sin_port = htons(9);
    if (probe >= 0 && connect(probe, target->ai_addr, target->ai_addrlen) == 0 &&
        getsockname(probe, address, &length) == 0)
        text = numericAddress(address, length);
    if (probe >= 0)
        close(probe);
    return text;
}

std::string ownAddressList(bool wantsAll) {
    std::string list;
    // Of the blocks set aside for documentation: on the far side of every default route.
    for (const char* elsewhere : {"192.0.2.1", "2001:db8::1"}) {
        const std::string own = sourceAddressTowards(elsewhere);
        if (own.empty() || (!wantsAll && !list.empty()))
            continue;
        list += (list.empty() ? std::string() : std::string(1, betweenAddresses)) + own;
    }
    return list.empty() ? "127.0.0.1" : list;
}

std::string answerTo(const std::string& question) {
    const bool wantsAll = question.front() == allOfThem;
    const std::string name = wantsAll ? question.substr(1) : question;
    if (name == ownAddressQuestion)
        return ownAddressList(wantsAll);
    return wantsAll ? lookUpAll(name) : lookUp(name);
}

/// One message, one answer, until the other end is closed.
[[noreturn]] void serve(int socket) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::array<char, longestName + 1> question{};
    for (;;) {
        const ssize_t size = recv(socket, question.data(), question.size(), 0);
        if (size <= 0)
            _exit(0);
        const std::string answer =
            answerTo(std::string(question.data(), static_cast<std::size_t>(size))) + separator;
        if (send(socket, answer.data(), answer.size(), MSG_NOSIGNAL) < 0)
            _exit(0);
    }
}

bool isName(const std::string& host) {
    return !host.empty() && host.size() <= longestName &&
           std::all_of(host.begin(), host.end(), [](char character) {
               return std::isgraph(static_cast<unsigned char>(character)) != 0;
           });
}

}  // namespace

NameLookup::NameLookup() {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0)
        return;
    _process = fork();
    if (_process == 0) {
        // The answer's reader waits until nobody holds it open.
        close(STDOUT_FILENO);
        close(ends[0]);
        serve(ends[1]);
    }
    close(ends[1]);
    if (_process > 0)
        _socket = ends[0];
    else
        close(ends[0]);
}

NameLookup::~NameLookup() {
    if (!isRunning())
        return;
    close(_socket);
    // It may hang in a look-up. Both calls are refused inside the sandbox, where it dies with us.
    kill(_process, SIGKILL);
    waitpid(_process, nullptr, 0);
}

/// By read and write, which the sandbox knows.
std::string NameLookup::ask(const std::string& question) {
    std::array<char, longestAnswer> answer{};
    if (write(_socket, question.data(), question.size()) < 0)
        return {};
    const ssize_t size = read(_socket, answer.data(), answer.size());
    if (size < 1 || answer[static_cast<std::size_t>(size) - 1] != separator)
        return {};
    return {answer.data(), static_cast<std::size_t>(size) - 1};
}

std::string NameLookup::addressOfHost(const std::string& host) {
    return isName(host) && host != ownAddressQuestion ? ask(host) : std::string();
}

std::string NameLookup::addressesOfHost(const std::string& host) {
    return isName(host) && host != ownAddressQuestion ? ask(allOfThem + host) : std::string();
}

std::string NameLookup::ownAddress() {
    return ask(ownAddressQuestion);
}

std::string NameLookup::ownAddresses() {
    return ask(allOfThem + ownAddressQuestion);
}

}  // namespace proxy_script
