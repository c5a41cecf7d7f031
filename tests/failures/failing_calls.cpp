// SPDX-License-Identifier: MIT
// Installs the filter of calls, and answers those that fail.
#include "failures/failing_calls.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <vector>

extern "C" long unwatched_call(long number, long a, long b, long c, long d, long e, long f);
extern "C" const char unwatched_call_made[];
asm(R"(
.text
.globl unwatched_call, unwatched_call_made
unwatched_call:
    mov %rdi, %rax
    mov %rsi, %rdi
    mov %rdx, %rsi
    mov %rcx, %rdx
    mov %r8, %r10
    mov %r9, %r8
    mov 8(%rsp), %r9
    syscall
unwatched_call_made:
    ret
)");

// The sanitizers end a process whose pages cannot be mapped.
#ifdef KELVANE_SANITIZED
constexpr long mapping = SYS_openat;
#else
constexpr long mapping = SYS_mmap;
#endif

namespace {

const FailingCalls::Way all_ways[] = {
    {"EMFILE", EMFILE, {SYS_open, SYS_openat, SYS_memfd_create, SYS_pipe2}},
    {"ENOMEM",
     ENOMEM,
     {SYS_open, SYS_openat, mapping, SYS_stat, SYS_lstat, SYS_fstat, SYS_newfstatat, SYS_statx,
      SYS_read, SYS_getdents64, SYS_rename, SYS_renameat2, SYS_link, SYS_linkat, SYS_unlink,
      SYS_mkdir, SYS_flock, SYS_fcntl}},
    {"EIO",
     EIO,
     {SYS_open,      SYS_openat,   SYS_read,   SYS_pread64,         SYS_readv,     SYS_write,
      SYS_pwrite64,  SYS_writev,   SYS_fsync,  SYS_fdatasync,       SYS_ftruncate, SYS_rename,
      SYS_renameat2, SYS_link,     SYS_linkat, SYS_unlink,          SYS_mkdir,     SYS_rmdir,
      SYS_stat,      SYS_lstat,    SYS_fstat,  SYS_newfstatat,      SYS_statx,     SYS_getdents64,
      SYS_lseek,     SYS_readlink, SYS_access, SYS_copy_file_range, SYS_sendfile,  SYS_fchmod}},
    {"ENOSPC",
     ENOSPC,
     {SYS_write, SYS_pwrite64, SYS_writev, SYS_rename, SYS_renameat2, SYS_link, SYS_linkat,
      SYS_mkdir, SYS_fallocate, SYS_copy_file_range, SYS_sendfile, SYS_fsync, SYS_fdatasync}},
    {"EINTR",
     EINTR,
     {SYS_open, SYS_openat, SYS_read, SYS_pread64, SYS_write, SYS_pwrite64, SYS_writev, SYS_fsync,
      SYS_fdatasync, SYS_ftruncate, SYS_flock},
     false},
    {"half", 0, {SYS_read, SYS_pread64, SYS_write, SYS_pwrite64}},
};

void add_watched(std::vector<sock_filter> &filter, long call) {
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<uint32_t>(call), 0, 1));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_TRAP));
}

} // namespace

std::span<const FailingCalls::Way> FailingCalls::ways() {
    return all_ways;
}

bool FailingCalls::fails_now(long call) {
    const Way *way = way_;
    if (!way || std::find(way->calls.begin(), way->calls.end(), call) == way->calls.end())
        return false;
    const long left = left_--;
    if (left > 0 || (left < 0 && times_ == once)) return false;
    failed_ = call;
    return true;
}

void FailingCalls::on_call(int, siginfo_t *info, void *context) {
    auto &regs = static_cast<ucontext_t *>(context)->uc_mcontext.gregs;
    const long call = info->si_syscall;
    long size = regs[REG_RDX];
    if (fails_now(call)) {
        const Way *way = way_;
        if (way && way->error != 0) {
            regs[REG_RAX] = -way->error;
            return;
        }
        size = std::max(size / 2, std::min(size, 1L));
    }
    regs[REG_RAX] = unwatched_call(call, regs[REG_RDI], regs[REG_RSI], size, regs[REG_R10],
                                   regs[REG_R8], regs[REG_R9]);
}

void FailingCalls::prepare() {
    struct sigaction action {};
    action.sa_sigaction = on_call;
    action.sa_flags = SA_SIGINFO | SA_NODEFER;
    sigaction(SIGSYS, &action, nullptr);
    const auto place = reinterpret_cast<uintptr_t>(unwatched_call_made);
    constexpr uint32_t place_at = offsetof(seccomp_data, instruction_pointer);
    std::vector<sock_filter> filter = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, place_at),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<uint32_t>(place), 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, place_at + 4),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<uint32_t>(place >> 32), 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
    };
    for (const Way &way : ways())
        for (const long call : way.calls) add_watched(filter, call);
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0)
        std::abort();
}
