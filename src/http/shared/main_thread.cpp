#include "http/shared/main_thread.h"

#include <unistd.h>

namespace http {

bool isMainThread() {
    // Asked for every report of a request, and two system calls to find out.
    thread_local const bool isMain = gettid() == getpid();
    return isMain;
}

}  // namespace http
