// SPDX-License-Identifier: MIT
// Covers of books: the format finds the picture file, the loaders of pictures make the bitmap.
#include "bookinfo/file_types.h"
#include "bookinfo/format.h"
#include "ground/guard.h"
#include "image/from_memory.h"
#include "kelvane/bookinfo.h"

namespace {

book::Picture find_cover(const char *path) {
    const book::Location l = book::locate(path);
    const book::Format *format = l.type ? book::find_format(l.name) : nullptr;
    if (!format || !format->cover || l.type->type == BOOK_TYPE_NO) return {};
    book::Source source(l);
    return format->cover(source);
}

} // namespace

ibitmap *GetBookCover(const char *path, int width, int height) {
    return ground::guarded(nullptr, [&]() -> ibitmap * {
        const image::Size wanted{width, height};
        if (!path || !image::is_request(wanted)) return nullptr;
        const book::Picture picture = find_cover(path);
        const std::span bytes(reinterpret_cast<const uint8_t *>(picture.data()), picture.size());
        return image::load_from_memory(bytes, wanted).release();
    });
}
