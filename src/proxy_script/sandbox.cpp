#include "proxy_script/sandbox.h"

#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <vector>

namespace proxy_script {

namespace {

/// Sanitizers map more address space than any limit leaves.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isInstrumented = true;
#else
constexpr bool isInstrumented = false;
#endif

std::size_t addressSpaceInUse() {
    std::size_t pages = 0;
    if (FILE* const file = std::fopen("/proc/self/statm", "re")) {
        if (std::fscanf(file, "%zu", &pages) != 1)
            pages = 0;
        std::fclose(file);
    }
    return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

bool setLimit(__rlimit_resource resource, rlim_t value) {
    const rlimit limit{value, value};
    return setrlimit(resource, &limit) == 0;
}

#if defined(__x86_64__)
constexpr unsigned architecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr unsigned architecture = AUDIT_ARCH_AARCH64;
#else
constexpr unsigned architecture = 0;
#endif

/// What an interpreter needs of the system once everything is open.
constexpr int harmlessCalls[] = {
    __NR_read,         __NR_write,           __NR_close,
    __NR_munmap,       __NR_mremap,          __NR_madvise,
    __NR_brk,          __NR_futex,           __NR_memfd_create,
    __NR_ftruncate,    __NR_getrandom,       __NR_clock_gettime,
    __NR_gettimeofday, __NR_rt_sigprocmask,  __NR_rt_sigreturn,
    __NR_sched_yield,  __NR_getpid,          __NR_gettid,
    __NR_tgkill,       __NR_restart_syscall, __NR_sched_getaffinity,
    __NR_exit,         __NR_exit_group,
};
/// What sanitizers need beside, to find out whether memory can be read, and at the end.
constexpr int callsOfSanitizers[] = {
#ifdef __NR_pipe
    __NR_pipe,
#endif
    __NR_pipe2,
    __NR_sigaltstack,
};
/// Their third argument is a protection, which must not make code of data.
constexpr int mappingCalls[] = {__NR_mmap, __NR_mprotect};

constexpr unsigned callOffset = offsetof(seccomp_data, nr);
constexpr unsigned architectureOffset = offsetof(seccomp_data, arch);
constexpr unsigned protectionOffset = offsetof(seccomp_data, args) + 2 * sizeof(std::uint64_t);

using Program = std::vector<sock_filter>;

void load(Program& program, unsigned offset) {
    program.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offset));
}

void answer(Program& program, unsigned verdict) {
    program.push_back(BPF_STMT(BPF_RET | BPF_K, verdict));
}

/// Skips `count` instructions unless what was loaded compares with `value` as told.
void unlessSkip(Program& program, unsigned short comparison, unsigned value, unsigned char count) {
    program.push_back(
        BPF_JUMP(static_cast<unsigned short>(BPF_JMP | comparison | BPF_K), value, 0, count));
}

Program filter() {
    constexpr unsigned refused = SECCOMP_RET_ERRNO | EPERM;
    Program program;
    load(program, architectureOffset);
    unlessSkip(program, BPF_JEQ, architecture, 1);
    program.push_back(BPF_JUMP(BPF_JMP | BPF_JA, 1, 0, 0));
    answer(program, SECCOMP_RET_KILL_PROCESS);
    load(program, callOffset);
    const auto allow = [&program](int call) {
        unlessSkip(program, BPF_JEQ, static_cast<unsigned>(call), 1);
        answer(program, SECCOMP_RET_ALLOW);
    };
    std::for_each(std::begin(harmlessCalls), std::end(harmlessCalls), allow);
    if (isInstrumented)
        std::for_each(std::begin(callsOfSanitizers), std::end(callsOfSanitizers), allow);
    for (const int call : mappingCalls) {
        unlessSkip(program, BPF_JEQ, static_cast<unsigned>(call), 4);
        load(program, protectionOffset);
        unlessSkip(program, BPF_JSET, PROT_EXEC, 1);
        answer(program, refused);
        answer(program, SECCOMP_RET_ALLOW);
    }
    answer(program, refused);
    return program;
}

}  // namespace

bool limitResources(std::size_t moreMemoryBytes, unsigned processorSeconds) {
    constexpr rlim_t openFiles = 16;
    const bool isMemoryBounded =
        isInstrumented || setLimit(RLIMIT_AS, addressSpaceInUse() + moreMemoryBytes);
    return isMemoryBounded && setLimit(RLIMIT_CPU, processorSeconds) && setLimit(RLIMIT_CORE, 0) &&
           setLimit(RLIMIT_NOFILE, openFiles);
}

bool enterSandbox() {
    if (architecture == 0)
        return false;
    Program program = filter();
    const sock_fprog description{static_cast<unsigned short>(program.size()), program.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &description) == 0;
}

}  // namespace proxy_script
