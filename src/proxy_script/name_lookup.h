#pragma once

#include <sys/types.h>
#include <string>

namespace proxy_script {

/// Looks names up in a process of its own, so that the one that runs the script needs no network.
/// It is started before the sandbox and ends with this object or with the process that made it.
class NameLookup {
public:
    NameLookup();
    ~NameLookup();
    NameLookup(const NameLookup&) = delete;
    NameLookup& operator=(const NameLookup&) = delete;

    [[nodiscard]] bool isRunning() const { return _socket >= 0; }
    /// An address of the host, of IPv4 where it has one. Empty: the name is not known.
    [[nodiscard]] std::string addressOfHost(const std::string& host);
    /// All addresses of the host, with semicolons between them. Empty: the name is not known.
    [[nodiscard]] std::string addressesOfHost(const std::string& host);
    /// The address from which this machine reaches others; that of the loop if it reaches none.
    [[nodiscard]] std::string ownAddress();
    /// The same of IPv4 and of IPv6, as far as there are any, with a semicolon between them.
    [[nodiscard]] std::string ownAddresses();

private:
    [[nodiscard]] std::string ask(const std::string& question);

    int _socket = -1;
    pid_t _process = -1;
};

}  // namespace proxy_script
