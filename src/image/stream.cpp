// SPDX-License-Identifier: MIT
#include "image/stream.h"

#include "ground/log.h"

namespace image {

namespace {

Stream open(const char *function, const char *path, const char *mode) {
    Stream f(kv_fopen(path, mode));
    if (!f) kv_warn(function, "can't open %s\n", path);
    return f;
}

} // namespace

Stream open_picture(const char *function, const char *path) {
    return open(function, path, "rb");
}

Stream create_picture(const char *function, const char *path) {
    return open(function, path, "wb");
}

} // namespace image
