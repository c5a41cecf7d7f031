// SPDX-License-Identifier: MIT
// Packs containers on all processors. What is in each is settled before, so that the result does
// not depend on how many work.
#include "pack.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <new>
#include <thread>
#include <zlib.h>

#include "dictionary/format.h"

namespace dict {
namespace {

using dictionary::largest_packed_container, dictionary::record_prefix;

// Even bytes that zlib can do nothing about fit into a container of so many.
constexpr size_t surely_fitting = 64'000;

// One packer serves many containers: to make it costs more than to pack a small one.
class Packer {
  public:
    Packer() {
        if (deflateInit(&stream_, Z_BEST_COMPRESSION) != Z_OK) throw std::bad_alloc();
    }
    Packer(const Packer &) = delete;
    Packer &operator=(const Packer &) = delete;
    ~Packer() { deflateEnd(&stream_); }

    std::string operator()(std::string &bytes) {
        deflateReset(&stream_);
        std::string out(deflateBound(&stream_, bytes.size()), '\0');
        stream_.next_in = reinterpret_cast<Bytef *>(bytes.data());
        stream_.avail_in = static_cast<uInt>(bytes.size());
        stream_.next_out = reinterpret_cast<Bytef *>(out.data());
        stream_.avail_out = static_cast<uInt>(out.size());
        deflate(&stream_, Z_FINISH);
        out.resize(out.size() - stream_.avail_out);
        return out;
    }

  private:
    z_stream stream_{};
};

void put_u16(std::string &out, size_t value) {
    out += static_cast<char>(value & 0xFF);
    out += static_cast<char>(value >> 8);
}

void put_record(std::string &out, const Entry &e) {
    put_u16(out, record_size(e));
    out.append(e.word).push_back('\0');
    out.append(e.article).push_back('\0');
}

// A run of sorted words.
struct Run {
    size_t begin, end;
};

// Where the words that collate alike end.
size_t end_of_equals(const Words &w, size_t begin) {
    size_t end = begin + 1;
    while (end < w.sorted.size() &&
           std::ranges::equal(w.key(w.sorted[begin]), w.key(w.sorted[end])))
        ++end;
    return end;
}

// Words that collate alike stay together. A container that would be too large to pack for sure is
// one of such words alone.
std::vector<Run> distribute(const Words &w, size_t wanted) {
    std::vector<Run> runs;
    size_t size = 0;
    for (size_t begin = 0; begin < w.sorted.size();) {
        const size_t end = end_of_equals(w, begin);
        size_t added = 0;
        for (size_t i = begin; i < end; ++i) added += record_size(*w.sorted[i].entry);
        if (runs.empty() || size >= wanted || size + added > surely_fitting) {
            runs.push_back({begin, begin});
            size = 0;
        }
        runs.back().end = end;
        size += added;
        begin = end;
    }
    return runs;
}

// The first words of a run.
struct Attempt {
    std::string bytes; // unpacked
    std::string packed;

    bool fits() const {
        return bytes.size() <= dictionary::largest_container &&
               packed.size() <= largest_packed_container;
    }
};

Attempt attempt(const Words &w, Run run, Packer &packer) {
    Attempt a;
    for (size_t i = run.begin; i < run.end && a.bytes.size() <= dictionary::largest_container; ++i)
        put_record(a.bytes, *w.sorted[i].entry);
    put_u16(a.bytes, 0);
    if (a.bytes.size() <= dictionary::largest_container) a.packed = packer(a.bytes);
    return a;
}

// Takes words that do not fit even alone off the front of a run, so that others have its place.
void take_misfits(const Words &w, Run &run, Packer &packer, std::vector<LeftOut> &left_out) {
    for (; run.begin < run.end; ++run.begin) {
        if (attempt(w, {run.begin, run.begin + 1}, packer).fits()) return;
        left_out.push_back({w.sorted[run.begin].entry, Reason::too_large});
    }
}

// As many words of the front of a run as fit, which is then their end.
Attempt largest_front(const Words &w, Run &run, Packer &packer) {
    Attempt best;
    size_t fitting = run.begin;
    for (size_t failing = run.end + 1; failing - fitting > 1;) {
        const size_t middle = fitting + (failing - fitting) / 2;
        Attempt a = attempt(w, {run.begin, middle}, packer);
        (a.fits() ? fitting : failing) = middle;
        if (a.fits()) best = std::move(a);
    }
    run.end = fitting;
    return best;
}

// Packs a run, or as many of its words as fit.
PackedContainer pack_run(const Words &w, Run run, Packer &packer) {
    PackedContainer packed;
    Attempt best = attempt(w, run, packer);
    if (!best.fits()) {
        const size_t end = run.end;
        take_misfits(w, run, packer, packed.left_out);
        best = largest_front(w, run, packer);
        for (size_t i = run.end; i < end; ++i)
            packed.left_out.push_back({w.sorted[i].entry, Reason::no_room});
    }
    if (run.begin == run.end) return packed;
    packed.first = w.sorted[run.begin].entry;
    packed.words = run.end - run.begin;
    packed.unpacked = best.bytes.size();
    packed.bytes = std::move(best.packed);
    return packed;
}

} // namespace

size_t record_size(const Entry &e) {
    return record_prefix + e.word.size() + 1 + e.article.size() + 1;
}

std::vector<PackedContainer> pack(const Words &words, const Plan &plan) {
    const std::vector<Run> runs = distribute(words, plan.container_bytes);
    std::vector<PackedContainer> packed(runs.size());
    std::atomic<size_t> next = 0;
    std::mutex telling; // guards what follows
    size_t done = 0;
    std::exception_ptr failure;
    const auto pack_some = [&] {
        Packer packer;
        for (size_t i; (i = next++) < runs.size();) {
            packed[i] = pack_run(words, runs[i], packer);
            const std::lock_guard lock(telling);
            plan.progress(++done, runs.size());
        }
    };
    const auto work = [&] {
        try {
            pack_some();
        } catch (...) {
            next = runs.size();
            const std::lock_guard lock(telling);
            failure = std::current_exception();
        }
    };
    const unsigned processors = plan.threads ? plan.threads : std::thread::hardware_concurrency();
    std::vector<std::jthread> helpers;
    for (size_t i = 1; i < std::min<size_t>(processors, runs.size()); ++i)
        helpers.emplace_back(work);
    work();
    helpers.clear();
    if (failure) std::rethrow_exception(failure);
    return packed;
}

std::string deflated(std::string text) {
    return Packer()(text);
}

} // namespace dict
