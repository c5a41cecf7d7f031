// SPDX-License-Identifier: MIT
// Calls of the system that fail on purpose, whoever makes them: the library, the libraries below it
// or that of C. The kernel hands each watched call of the process to a signal handler, which makes
// the call itself, from the one instruction that is not watched, or answers in its place. x86-64.
#pragma once

#include <atomic>
#include <csignal>
#include <initializer_list>
#include <span>
#include <string>

// For as long as it lives, call number k of those that fail in such a way does, from 0 on, and with
// `for_ever` all later ones.
class FailingCalls {
  public:
    enum Times { once, for_ever };
    // How calls fail, and which of them do.
    struct Way {
        const char *name;
        int error; // 0: half of what was asked for is read or written
        std::initializer_list<long> calls;
        bool may_last = true; // false: whoever meets it tries again until it is over
    };
    static std::span<const Way> ways();

    // Watches the calls of this process from now on.
    static void prepare();

    FailingCalls(const Way &way, long k, Times times) {
        left_ = k;
        times_ = times;
        failed_ = 0;
        way_ = &way;
    }
    ~FailingCalls() { way_ = nullptr; }
    FailingCalls(const FailingCalls &) = delete;
    FailingCalls &operator=(const FailingCalls &) = delete;

    bool has_failed() const { return failed_ != 0; }
    static std::string last_failed() {
        return "the last that failed: system call " + std::to_string(failed_);
    }

  private:
    static void on_call(int, siginfo_t *info, void *context);
    static bool fails_now(long call);

    static inline std::atomic<const Way *> way_;
    static inline std::atomic<long> left_, failed_;
    static inline std::atomic<Times> times_;
};
