// SPDX-License-Identifier: MIT
// Allocations that fail on purpose: all of a program's, those of every shared library too. One
// source of a program includes this, as it defines malloc() and its kin.
//
//     for (long k = 0;; ++k) {
//         FailingMemory memory(k, FailingMemory::once);
//         do_something();
//         if (!memory.has_failed()) break; // there are k allocations
//     }
#pragma once

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <dlfcn.h>
#include <new>

// For as long as it lives, allocation number k of any thread fails, from 0 on, and with `for_ever`
// all later ones.
class FailingMemory {
  public:
    enum Times { once, for_ever };
    FailingMemory(long k, Times times) {
        left_ = k;
        times_ = times;
        failed_ = false;
        is_on_ = true;
    }
    ~FailingMemory() { is_on_ = false; }
    FailingMemory(const FailingMemory &) = delete;
    FailingMemory &operator=(const FailingMemory &) = delete;

    bool has_failed() const { return failed_; }

    static bool fails_now() {
        if (!is_on_) return false;
        const long left = left_--;
        if (left > 0 || (left < 0 && times_ == once)) return false;
        failed_ = true;
        errno = ENOMEM;
        return true;
    }

  private:
    static inline std::atomic<bool> is_on_, failed_;
    static inline std::atomic<long> left_;
    static inline std::atomic<Times> times_;
};

// Sanitizers start before any malloc() of ours could: with them only C++'s operators fail.
#ifdef KELVANE_SANITIZED
inline void *fallible_malloc(size_t size) {
    return FailingMemory::fails_now() ? nullptr : std::malloc(size);
}
#else
inline void *fallible_malloc(size_t size) {
    return std::malloc(size);
}

// The next definition of a function, which this one stands before.
template <class Function>
Function *next_definition(const char *name, std::atomic<Function *> &found) {
    if (!found) found = reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
    return found;
}

extern "C" {
[[gnu::visibility("default")]] void *malloc(size_t size) {
    static constinit std::atomic<void *(*)(size_t)> next = nullptr;
    return FailingMemory::fails_now() ? nullptr : next_definition("malloc", next)(size);
}
[[gnu::visibility("default")]] void *calloc(size_t count, size_t size) {
    static constinit std::atomic<void *(*)(size_t, size_t)> next = nullptr;
    return FailingMemory::fails_now() ? nullptr : next_definition("calloc", next)(count, size);
}
[[gnu::visibility("default")]] void *realloc(void *block, size_t size) {
    static constinit std::atomic<void *(*)(void *, size_t)> next = nullptr;
    return FailingMemory::fails_now() ? nullptr : next_definition("realloc", next)(block, size);
}
}
#endif

// Sanitizers' operators do not go through malloc(). Not inlined, so that the compiler does not take
// these for a mismatch.
[[gnu::noinline]] inline void *allocate_or_throw(size_t size) {
    if (void *block = fallible_malloc(size)) return block;
    throw std::bad_alloc();
}
[[gnu::noinline]] inline void release_block(void *block) {
    std::free(block);
}
void *operator new(size_t size) {
    return allocate_or_throw(size);
}
void *operator new[](size_t size) {
    return allocate_or_throw(size);
}
void *operator new(size_t size, const std::nothrow_t &) noexcept {
    return fallible_malloc(size);
}
void *operator new[](size_t size, const std::nothrow_t &) noexcept {
    return fallible_malloc(size);
}
void operator delete(void *block) noexcept {
    release_block(block);
}
void operator delete[](void *block) noexcept {
    release_block(block);
}
void operator delete(void *block, size_t) noexcept {
    release_block(block);
}
void operator delete[](void *block, size_t) noexcept {
    release_block(block);
}
