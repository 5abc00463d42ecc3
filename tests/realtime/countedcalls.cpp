#include "countedcalls.h"

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>

#include <dlfcn.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <pthread.h>
#include <semaphore.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define COUNTED_SANITIZER 1
#else
#define COUNTED_SANITIZER 0
#endif

namespace {

using CountedCalls::Counts;

// Plain thread-locals of the executable: reaching them calls nothing.
thread_local bool counting = false;
thread_local Counts counts;

#if !COUNTED_SANITIZER
void count(std::uint64_t Counts::*what) {
    if (counting) {
        ++(counts.*what);
    }
}
#endif

} // namespace

// ---- the allocator and the locks ----

#if !COUNTED_SANITIZER

extern "C" {

void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
void __libc_free(void*);

void* malloc(std::size_t size) noexcept {
    count(&Counts::allocations);
    return __libc_malloc(size);
}

void* calloc(std::size_t n, std::size_t size) noexcept {
    count(&Counts::allocations);
    return __libc_calloc(n, size);
}

void* realloc(void* old, std::size_t size) noexcept {
    count(&Counts::allocations);
    return __libc_realloc(old, size);
}

void* memalign(std::size_t alignment, std::size_t size) noexcept {
    count(&Counts::allocations);
    return __libc_memalign(alignment, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    return memalign(alignment, size);
}

int posix_memalign(void** out, std::size_t alignment, std::size_t size) noexcept {
    *out = memalign(alignment, size);
    return *out == nullptr ? ENOMEM : 0;
}

void free(void* block) noexcept {
    count(&Counts::frees);
    __libc_free(block);
}

} // extern "C"

// The C library's own function behind each of ours, found at the first call.
#define COUNTED_LOCK(name, parameters, ...)                                                                  \
    extern "C" int name parameters noexcept(noexcept(::name(__VA_ARGS__))) {                                 \
        static int(*real) parameters = nullptr;                                                              \
        if (real == nullptr) {                                                                               \
            real = reinterpret_cast<int(*) parameters>(dlsym(RTLD_NEXT, #name));                             \
        }                                                                                                    \
        count(&Counts::locks);                                                                               \
        return real(__VA_ARGS__);                                                                            \
    }

COUNTED_LOCK(pthread_mutex_lock, (pthread_mutex_t * mutex), mutex)
COUNTED_LOCK(pthread_mutex_trylock, (pthread_mutex_t * mutex), mutex)
COUNTED_LOCK(pthread_rwlock_rdlock, (pthread_rwlock_t * lock), lock)
COUNTED_LOCK(pthread_rwlock_wrlock, (pthread_rwlock_t * lock), lock)
COUNTED_LOCK(pthread_spin_lock, (pthread_spinlock_t * lock), lock)
COUNTED_LOCK(pthread_cond_wait, (pthread_cond_t * condition, pthread_mutex_t* mutex), condition, mutex)
COUNTED_LOCK(pthread_cond_signal, (pthread_cond_t * condition), condition)
COUNTED_LOCK(pthread_cond_broadcast, (pthread_cond_t * condition), condition)
COUNTED_LOCK(sem_wait, (sem_t * semaphore), semaphore)
COUNTED_LOCK(sem_post, (sem_t * semaphore), semaphore)

#endif

// ---- system calls ----

#if defined(__x86_64__) && !COUNTED_SANITIZER

// The one place from which the filter lets a watched thread through to the kernel.
extern "C" long countedPassOn(long number, long a, long b, long c, long d, long e, long f);
extern "C" const char countedPassedOn[];
asm(R"(
    .text
    .globl countedPassOn, countedPassedOn
    .type countedPassOn, @function
countedPassOn:
    mov %rdi, %rax
    mov %rsi, %rdi
    mov %rdx, %rsi
    mov %rcx, %rdx
    mov %r8, %r10
    mov %r9, %r8
    mov 8(%rsp), %r9
    syscall
countedPassedOn:
    ret
    .size countedPassOn, .-countedPassOn
)");

namespace {

void onSystemCall(int, siginfo_t*, void* context) {
    greg_t* registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
    if (counting) {
        ++counts.systemCalls;
    }
    registers[REG_RAX] =
        countedPassOn(registers[REG_RAX], registers[REG_RDI], registers[REG_RSI], registers[REG_RDX],
                      registers[REG_R10], registers[REG_R8], registers[REG_R9]);
}

constexpr sock_filter load(std::size_t offset) {
    return BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<std::uint32_t>(offset));
}

constexpr sock_filter unlessEqual(std::uint64_t value, unsigned char skip) {
    return BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(value), 0, skip);
}

constexpr sock_filter verdict(std::uint32_t value) {
    return BPF_STMT(BPF_RET | BPF_K, value);
}

} // namespace

const char* CountedCalls::watchSystemCalls() {
    struct sigaction action {};
    action.sa_sigaction = &onSystemCall;
    action.sa_flags = SA_SIGINFO;
    sigaction(SIGSYS, &action, nullptr);

    // seccomp names the address behind the instruction, in two halves. The return from a handler is a system
    // call itself and goes straight through.
    const auto passedOn = reinterpret_cast<std::uintptr_t>(countedPassedOn);
    const sock_filter filter[] = {
        load(offsetof(seccomp_data, nr)),
        unlessEqual(__NR_rt_sigreturn, 1),
        verdict(SECCOMP_RET_ALLOW),
        load(offsetof(seccomp_data, instruction_pointer)),
        unlessEqual(passedOn & 0xFFFFFFFFU, 3),
        load(offsetof(seccomp_data, instruction_pointer) + 4),
        unlessEqual(passedOn >> 32, 1),
        verdict(SECCOMP_RET_ALLOW),
        verdict(SECCOMP_RET_TRAP),
    };
    const sock_fprog program{sizeof filter / sizeof filter[0], const_cast<sock_filter*>(filter)};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
        return "system calls aren't counted: the kernel doesn't take a filter here";
    }
    return nullptr;
}

void CountedCalls::leaveThread() {
    for (;;) {
        countedPassOn(SYS_exit, 0, 0, 0, 0, 0, 0);
    }
}

#else

const char* CountedCalls::watchSystemCalls() {
    return "system calls aren't counted on this processor or under a sanitizer";
}

void CountedCalls::leaveThread() {
    pthread_exit(nullptr);
}

#endif

const char* CountedCalls::callsUncounted() {
    return COUNTED_SANITIZER
               ? "calls aren't counted under a sanitizer, which stands before the allocator itself"
               : nullptr;
}

void CountedCalls::start() {
    counts = Counts();
    counting = true;
}

Counts CountedCalls::stop() {
    counting = false;
    return counts;
}
