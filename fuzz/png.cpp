// SPDX-License-Identifier: MIT
// Any bytes as a PNG file; mutations keep the checksums of chunks right.
#include <algorithm>
#include <zlib.h>

#include "picture_file.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t max_size);

namespace {

constexpr size_t signature_bytes = 8, chunk_overhead = 12;

void put_number(uint8_t *at, uint32_t value) {
    for (int i = 0; i < 4; ++i) at[i] = static_cast<uint8_t>(value >> (24 - 8 * i));
}

uint32_t number(const uint8_t *at) {
    return uint32_t{at[0]} << 24 | uint32_t{at[1]} << 16 | uint32_t{at[2]} << 8 | at[3];
}

void correct_checksums(uint8_t *data, size_t size) {
    for (size_t at = signature_bytes; size >= chunk_overhead && at <= size - chunk_overhead;) {
        const size_t length = number(data + at);
        if (length > size - at - chunk_overhead) return;
        const auto covered = static_cast<uInt>(length + 4);
        put_number(data + at + 8 + length, static_cast<uint32_t>(crc32(0, data + at + 4, covered)));
        at += length + chunk_overhead;
    }
}

} // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t max_size, unsigned) {
    size = LLVMFuzzerMutate(data, size, max_size);
    correct_checksums(data, size);
    return size;
}

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    prepare_loaders();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static PictureFile file;
    file.put(data, size);
    const Choice c(data, size);
    SetLoadImageFlags(c.flags);
    use(LoadPNGStretch(file.path(), c.width, c.height, c.proportional, 0), c);
    return 0;
}
