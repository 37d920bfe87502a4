#include "http/shared/main_thread.h"

#include <unistd.h>

namespace http {

bool isMainThread() {
    return gettid() == getpid();
}

}  // namespace http
