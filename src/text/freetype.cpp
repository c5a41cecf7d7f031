// SPDX-License-Identifier: MIT
// The one FreeType library, its memory, and how files become faces.
#include "text/freetype.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iterator>
#include <new>
#include <utility>
#include FT_MODULE_H

#include "file/stream.h"
#include "ground/log.h"
#include "internal.h"

namespace text {
namespace {

constexpr size_t preread_bytes = 512;

FT_Library freetype;

// FreeType does without much that it has no memory for, a face would lack it for good, and what it
// cannot do without it does not always look for. So what the system does not give comes from a
// reserve for the rest of the call, and it is noted.
class Reserve {
  public:
    bool has(const void *block) const {
        return std::less_equal<>()(std::begin(bytes_), block) &&
               std::less<>()(block, std::end(bytes_));
    }
    void *allocate(size_t size) {
        const size_t room = (size + alignment - 1) / alignment * alignment;
        if (room < size || room > sizeof bytes_ - used_) return nullptr;
        ++blocks_;
        return bytes_ + std::exchange(used_, used_ + room);
    }
    void release() {
        if (--blocks_ == 0) used_ = 0;
    }

  private:
    static constexpr size_t alignment = alignof(std::max_align_t);
    alignas(alignment) char bytes_[1 << 18]; // costs nothing while it is not used
    size_t used_ = 0, blocks_ = 0;
};
Reserve reserve;
bool ran_out;

void *allocate(FT_Memory, long size) {
    if (void *block = std::malloc(static_cast<size_t>(size))) return block;
    ran_out = true;
    return reserve.allocate(static_cast<size_t>(size));
}

void release(FT_Memory, void *block) {
    if (reserve.has(block))
        reserve.release();
    else
        std::free(block);
}

void *reallocate(FT_Memory memory, long old_size, long size, void *block) {
    if (!reserve.has(block))
        if (void *moved = std::realloc(block, static_cast<size_t>(size))) return moved;
    void *moved = allocate(memory, size);
    if (!moved) return nullptr;
    std::memcpy(moved, block, static_cast<size_t>(std::min(old_size, size)));
    release(memory, block);
    return moved;
}

FT_MemoryRec_ memory = {nullptr, allocate, release, reallocate};

FT_Error start() {
    if (const FT_Error error = FT_New_Library(&memory, &freetype)) return error;
    FT_Add_Default_Modules(freetype);
    FT_Set_Default_Properties(freetype);
    if (!std::exchange(ran_out, false)) return 0;
    FT_Done_Library(freetype);
    return FT_Err_Out_Of_Memory;
}

// Reads the start of a file, so that storage is there when FreeType opens it.
bool preread(const char *path) {
    const file::Stream stream = file::open_plain(path);
    if (!stream && errno == ENOMEM) throw std::bad_alloc();
    char start[preread_bytes];
    return stream && kv_fread(start, 1, sizeof start, stream.get()) > 0;
}

} // namespace

FT_Library library() {
    if (freetype) return freetype;
    if (const FT_Error error = start()) {
        kv_warn("OpenFont", "FT_Init_Freetype: error %i\n", error);
        freetype = nullptr;
    }
    kvstate.ftlibrary = freetype;
    return freetype;
}

void stop_freetype() {
    FT_Done_Library(freetype);
    freetype = nullptr;
    kvstate.ftlibrary = nullptr;
}

FacePtr open_font_bytes(FontBytes font) {
    if (!library()) return nullptr;
    FT_Face face = nullptr;
    const FT_Error error =
        FT_New_Memory_Face(library(), font.bytes.get(), static_cast<FT_Long>(font.size), 0, &face);
    FacePtr owner(error == 0 ? face : nullptr, FaceCloser{std::move(font)});
    check_freetype_memory();
    return owner;
}

FacePtr open_font_file(const char *path, int face_index) {
    if (!library() || !preread(path)) return nullptr;
    FT_Face face = nullptr;
    const FT_Error error = FT_New_Face(library(), path, face_index, &face);
    FacePtr owner(error == 0 ? face : nullptr);
    check_freetype_memory();
    return owner;
}

void check_freetype_memory() {
    if (std::exchange(ran_out, false)) throw std::bad_alloc();
}

} // namespace text
