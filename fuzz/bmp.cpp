// SPDX-License-Identifier: MIT
// Any bytes as a BMP file, on a panel that the last byte chooses.
#include <cstdint>
#include <cstdlib>

#include "bmp/bmp.h"
#include "hw.h"
#include "picture_file.h"

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    prepare_loaders();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const bool two_bits = size > 0 && data[size - 1] % 2 != 0;
    loadHwConfigEmulator(two_bits ? "0x0010111101013021" : "0x0010111101013041");
    const auto bm = bmp::parse("fuzz", "fuzz", {data, size});
    if (bm == nullptr) return 0;
    if (bm->width == 0 || bm->height == 0 || raster::depth_of(*bm) != (two_bits ? 2 : 4))
        std::abort();
    const size_t mask = raster::has_mask(*bm) ? raster::mask_bytes(*bm) : 0;
    unsigned sum = 0;
    for (size_t i = 0; i < raster::pixel_bytes(*bm) + mask; ++i) sum += bm->data[i];
    volatile unsigned used = sum;
    static_cast<void>(used);
    return 0;
}
