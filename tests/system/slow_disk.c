/* Preloaded into a program, makes each of its writes to a regular file take SLOW_DISK_MICROSECONDS
   for each 64 KiB: a disk that is slower than any network. Each sync takes SLOW_SYNC_MICROSECONDS.
   With WITHOUT_ATTRIBUTES files have none, as on many sticks and network disks. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <sys/xattr.h>
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

static int slow_sync(const char* name, int descriptor) {
    int (*next)(int) = dlsym(RTLD_NEXT, name);
    const char* text = getenv("SLOW_SYNC_MICROSECONDS");
    if (text)
        usleep((useconds_t)atol(text));
    return next(descriptor);
}

int fsync(int descriptor) {
    return slow_sync("fsync", descriptor);
}

int fdatasync(int descriptor) {
    return slow_sync("fdatasync", descriptor);
}

static int has_attributes(void) {
    errno = ENOTSUP;
    return getenv("WITHOUT_ATTRIBUTES") == NULL;
}

int fsetxattr(int file, const char* name, const void* value, size_t size, int flags) {
    int (*next)(int, const char*, const void*, size_t, int) = dlsym(RTLD_NEXT, "fsetxattr");
    return has_attributes() ? next(file, name, value, size, flags) : -1;
}

int lsetxattr(const char* path, const char* name, const void* value, size_t size, int flags) {
    int (*next)(const char*, const char*, const void*, size_t, int) =
        dlsym(RTLD_NEXT, "lsetxattr");
    return has_attributes() ? next(path, name, value, size, flags) : -1;
}
