// SPDX-License-Identifier: MIT
// Copies, moves and removes files, alone or with the state that readers keep for a book.
#include "kelvane/files.h"

#include "file/associated.h"
#include "ground/heap.h"

namespace {

// Writes what `from` still holds. Unbuffered on the writing side, so that a full disk is met here
// and not when the copy is closed and called done.
bool copy_stream(FILE *from, FILE *to) {
    setvbuf(to, nullptr, _IONBF, 0);
    char piece[4096];
    for (;;) {
        const size_t got = kv_fread(piece, 1, sizeof piece, from);
        if (!got) return true;
        if (kv_fwrite(piece, 1, got, to) != got) return false;
    }
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

extern "C" {

int copy_file(const char *from, const char *to) {
    FILE *source = kv_fopen(from, "rb");
    if (!source) return 0;
    FILE *target = kv_fopen(to, "wb");
    const bool copied = target && copy_stream(source, target);
    kv_fclose_no_sync(source);
    // What has not reached the disk is no reason to drop a source.
    return kv_fclose(target) == 0 && copied;
}

int move_file(const char *from, const char *to) {
    if (!from || !to) return 0;
    if (kv_strcasecmp(from, to) == 0 || kv_rename(from, to) == 0) return 1;
    if (!copy_file(from, to)) return 0;
    kv_unlink(from);
    return 1;
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

} // extern "C"
