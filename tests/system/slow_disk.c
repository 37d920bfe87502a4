/* Preloaded into a program, makes each of its writes to a regular file take SLOW_DISK_MICROSECONDS
   for each 64 KiB: a disk that is slower than any network. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

static void wait_for(int descriptor, ssize_t written) {
    const char* text = getenv("SLOW_DISK_MICROSECONDS");
    struct stat about;
    if (!text || written <= 0 || fstat(descriptor, &about) != 0 || !S_ISREG(about.st_mode))
        return;
    usleep((useconds_t)(atol(text) * written / 65536));
}

ssize_t write(int descriptor, const void* bytes, size_t count) {
    ssize_t (*next)(int, const void*, size_t) = dlsym(RTLD_NEXT, "write");
    ssize_t written = next(descriptor, bytes, count);
    wait_for(descriptor, written);
    return written;
}

ssize_t pwrite64(int descriptor, const void* bytes, size_t count, off64_t offset) {
    ssize_t (*next)(int, const void*, size_t, off64_t) = dlsym(RTLD_NEXT, "pwrite64");
    ssize_t written = next(descriptor, bytes, count, offset);
    wait_for(descriptor, written);
    return written;
}

ssize_t pwrite(int descriptor, const void* bytes, size_t count, off_t offset) {
    return pwrite64(descriptor, bytes, count, offset);
}

ssize_t writev(int descriptor, const struct iovec* parts, int count) {
    ssize_t (*next)(int, const struct iovec*, int) = dlsym(RTLD_NEXT, "writev");
    ssize_t written = next(descriptor, parts, count);
    wait_for(descriptor, written);
    return written;
}

ssize_t pwritev(int descriptor, const struct iovec* parts, int count, off_t offset) {
    ssize_t (*next)(int, const struct iovec*, int, off_t) = dlsym(RTLD_NEXT, "pwritev");
    ssize_t written = next(descriptor, parts, count, offset);
    wait_for(descriptor, written);
    return written;
}
