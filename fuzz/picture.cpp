// SPDX-License-Identifier: MIT
// Any bytes as a picture whose format its bytes tell.
#include "picture_file.h"

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    prepare_loaders();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static PictureFile file;
    file.put(data, size);
    Choice c(data, size);
    const int how = c.flags % 3, dither = c.proportional;
    int width = 0, height = 0;
    const bool has_size = GetPictureSize(file.path(), &width, &height) == 1;
    ibitmap *bm = LoadPicture(file.path(), c.width, c.height, how, dither);
    if (bm == nullptr) return 0;
    if (!has_size || width < 1 || height < 1) std::abort();
    if (how == PICTURE_FIT) c.width = bm->width; // or less than was asked for
    use(bm, c);
    return 0;
}
