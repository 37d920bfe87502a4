#pragma once

#include <sys/resource.h>

#include <csignal>

namespace http_test {

/// For its life, no file of this process grows past so many bytes: a write fails as on a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : _formerHandler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &_former);
        const rlimit limit{bytes, _former.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &_former);
        std::signal(SIGXFSZ, _formerHandler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit _former{};
    void (*_formerHandler)(int);
};

}  // namespace http_test
