#pragma once

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

namespace support {

/// While it lives, nothing can be opened: EMFILE.
class NoDescriptors {
public:
    NoDescriptors() {
        EXPECT_EQ(getrlimit(RLIMIT_NOFILE, &usual_), 0);
        const int lowestFree = dup(STDIN_FILENO);
        close(lowestFree);
        const rlimit none{static_cast<rlim_t>(lowestFree), usual_.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    }
    ~NoDescriptors() { setrlimit(RLIMIT_NOFILE, &usual_); }
    NoDescriptors(const NoDescriptors&) = delete;
    NoDescriptors& operator=(const NoDescriptors&) = delete;

private:
    rlimit usual_{};
};

}  // namespace support
