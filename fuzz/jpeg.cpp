// SPDX-License-Identifier: MIT
// Any bytes as a JPEG file.
#include "picture_file.h"

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    prepare_loaders();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static PictureFile file;
    file.put(data, size);
    const Choice c(data, size);
    SetLoadImageFlags(c.flags);
    SetLoadFrameColor(c.frame);
    use(LoadJPEG(file.path(), c.width, c.height, 80, 150, c.proportional), c);
    return 0;
}
