// SPDX-License-Identifier: MIT
// Copies, moves and removes files, alone or with the state that readers keep for a book.
#include "kelvane/files.h"

#include <sys/stat.h>

#include "file/associated.h"
#include "file/replacement.h"
#include "file/stream.h"
#include "ground/guard.h"
#include "ground/heap.h"

namespace {

// Writes what `from` still holds. Unbuffered on the writing side, so that each write is tried again
// while storage settles.
bool copy_stream(FILE *from, FILE *to) {
    setvbuf(to, nullptr, _IONBF, 0);
    char piece[4096];
    for (;;) {
        const size_t got = kv_fread(piece, 1, sizeof piece, from);
        if (!got) return true;
        if (kv_fwrite(piece, 1, got, to) != got) return false;
    }
}

bool is_at_end(FILE *f) {
    struct stat st;
    return !ferror(f) && fstat(fileno(f), &st) == 0 && ftell(f) >= st.st_size;
}

bool is_same_file(FILE *f, const char *path) {
    struct stat a, b;
    return fstat(fileno(f), &a) == 0 && kv_stat(path, &b) == 0 && a.st_dev == b.st_dev &&
           a.st_ino == b.st_ino;
}

// What a source is that cannot be read to its end.
enum class Unreadable { ended, failed };
enum class Copied { no, yes, onto_itself };

Copied copy(const char *from, const char *to, Unreadable rest) {
    const file::Stream source = to ? file::open_plain(from) : nullptr;
    if (!source) return Copied::no;
    if (is_same_file(source.get(), to)) return Copied::onto_itself;
    file::Replacement target(to);
    const bool copied = target.stream() && copy_stream(source.get(), target.stream()) &&
                        (rest == Unreadable::ended || is_at_end(source.get()));
    return copied && target.commit() ? Copied::yes : Copied::no;
}

// Applies `act` to each associated file of `from` and its place beside `to`.
template <class Action>
void for_each_associated(const char *from, const char *to, Action act) {
    for (char kind : associated_kinds) {
        const ground::HeapString source(CheckAssociatedFile(from, kind));
        if (!source) continue;
        const ground::HeapString target(to ? GetAssociatedFile(to, kind) : nullptr);
        act(source.get(), target.get());
    }
}

} // namespace

int copy_file(const char *from, const char *to) {
    return ground::guarded(
        0, [&]() -> int { return copy(from, to, Unreadable::ended) != Copied::no; });
}

int move_file(const char *from, const char *to) {
    if (!from || !to) return 0;
    if (kv_strcasecmp(from, to) == 0 || kv_rename(from, to) == 0) return 1;
    return ground::guarded(0, [&]() -> int {
        return copy(from, to, Unreadable::failed) == Copied::yes && kv_unlink(from) == 0;
    });
}

int copy_file_with_af(const char *from, const char *to) {
    if (!copy_file(from, to)) return 0;
    for_each_associated(from, to, copy_file);
    return 1;
}

int move_file_with_af(const char *from, const char *to) {
    if (!move_file(from, to)) return 0;
    for_each_associated(from, to, move_file);
    return 1;
}

int unlink_file_with_af(const char *path) {
    const bool removed = kv_unlink(path) == 0;
    for_each_associated(path, nullptr, [](const char *state, const char *) { kv_unlink(state); });
    return removed;
}
