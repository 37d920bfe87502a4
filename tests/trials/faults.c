/* Preloaded into a program, does harm at one of its calls for files: at the FAULT_AT-th (from 1) of
   those that FAULT_CALLS names (separated by commas; all if it is unset), and with FAULT_EVERY at
   each so-manieth after it. FAULT_ACTION says what: "before" and "after" kill the program then,
   "short" writes half, a number is the error that the call fails with. FAULT_COUNT: a file that
   grows by one byte with each harm. FAULT_BOOT_ID: the file that tells the boot in place of the
   kernel's. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdarg.h>
#include <stdatomic.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/xattr.h>
#include <unistd.h>

static atomic_long calls;

static int is_named(const char* name) {
    const char* names = getenv("FAULT_CALLS");
    size_t length = strlen(name);
    for (const char* at = names; at && (at = strstr(at, name)); at += length)
        if ((at == names || at[-1] == ',') && (at[length] == ',' || at[length] == '\0'))
            return 1;
    return names == NULL;
}

static int is_due(long call) {
    long first = atol(getenv("FAULT_AT"));
    const char* every = getenv("FAULT_EVERY");
    return call == first || (every && call > first && (call - first) % atol(every) == 0);
}

/* By the kernel's own calls, which are not counted here. */
static void count_harm(void) {
    const char* path = getenv("FAULT_COUNT");
    int before = errno;
    int file = path ? (int)syscall(SYS_openat, AT_FDCWD, path, O_WRONLY | O_APPEND | O_CREAT, 0600)
                    : -1;
    if (file >= 0) {
        syscall(SYS_write, file, "x", 1);
        syscall(SYS_close, file);
    }
    errno = before;
}

/* What is to be done at this call. Null: nothing. */
static const char* fault(const char* name) {
    if (!getenv("FAULT_AT") || !is_named(name) || !is_due(atomic_fetch_add(&calls, 1) + 1))
        return NULL;
    const char* action = getenv("FAULT_ACTION");
    count_harm();
    if (action && strcmp(action, "before") == 0)
        kill(getpid(), SIGKILL);
    return action;
}

static int is_error(const char* action) {
    if (!action || *action < '0' || *action > '9')
        return 0;
    errno = atoi(action);
    return 1;
}

static void die_after(const char* action) {
    if (action && strcmp(action, "after") == 0)
        kill(getpid(), SIGKILL);
}

static int is_file(int descriptor) {
    struct stat about;
    return fstat(descriptor, &about) == 0 && S_ISREG(about.st_mode);
}

#define NEXT(name) ((__typeof__(&name))dlsym(RTLD_NEXT, #name))

#define WRAPPED(type, name, condition, parameters, arguments)          \
    type name parameters {                                            \
        const char* action = (condition) ? fault(#name) : NULL;       \
        if (is_error(action))                                         \
            return -1;                                                \
        type result = NEXT(name) arguments;                           \
        die_after(action);                                            \
        return result;                                                \
    }

#define WRITING(name, parameters, arguments)                          \
    ssize_t name parameters {                                         \
        const char* action = is_file(file) ? fault(#name) : NULL;     \
        if (is_error(action))                                         \
            return -1;                                                \
        if (action && strcmp(action, "short") == 0 && count > 1)      \
            count /= 2;                                               \
        ssize_t result = NEXT(name) arguments;                        \
        die_after(action);                                            \
        return result;                                                \
    }

WRITING(write, (int file, const void* bytes, size_t count), (file, bytes, count))
WRITING(pwrite, (int file, const void* bytes, size_t count, off_t at), (file, bytes, count, at))
WRITING(pwrite64, (int file, const void* bytes, size_t count, off64_t at),
        (file, bytes, count, at))
WRAPPED(ssize_t, copy_file_range, 1,
        (int from, off64_t* in, int to, off64_t* out, size_t count, unsigned flags),
        (from, in, to, out, count, flags))
WRAPPED(int, fsync, 1, (int file), (file))
WRAPPED(int, fdatasync, 1, (int file), (file))
WRAPPED(int, ftruncate, is_file(file), (int file, off_t length), (file, length))
WRAPPED(int, rename, 1, (const char* from, const char* to), (from, to))
WRAPPED(int, renameat2, 1,
        (int folder, const char* from, int other, const char* to, unsigned flags),
        (folder, from, other, to, flags))
WRAPPED(int, linkat, 1, (int folder, const char* from, int other, const char* to, int flags),
        (folder, from, other, to, flags))
WRAPPED(int, unlink, 1, (const char* path), (path))
WRAPPED(int, mkdir, 1, (const char* path, mode_t mode), (path, mode))
WRAPPED(int, fsetxattr, 1,
        (int file, const char* name, const void* value, size_t size, int flags),
        (file, name, value, size, flags))
WRAPPED(int, lsetxattr, 1,
        (const char* path, const char* name, const void* value, size_t size, int flags),
        (path, name, value, size, flags))

static const char* redirected(const char* path) {
    const char* boot = getenv("FAULT_BOOT_ID");
    return boot && strcmp(path, "/proc/sys/kernel/random/boot_id") == 0 ? boot : path;
}

#define OPENING(name)                                                 \
    int name(const char* path, int flags, ...) {                      \
        va_list more;                                                 \
        va_start(more, flags);                                        \
        mode_t mode = (flags & (O_CREAT | __O_TMPFILE)) ? va_arg(more, mode_t) : 0; \
        va_end(more);                                                 \
        const char* action =                                          \
            (flags & (O_WRONLY | O_RDWR)) ? fault("open") : NULL;     \
        if (is_error(action))                                         \
            return -1;                                                \
        int result = NEXT(name)(redirected(path), flags, mode);       \
        die_after(action);                                            \
        return result;                                                \
    }

OPENING(open)
OPENING(open64)
