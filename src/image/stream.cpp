// SPDX-License-Identifier: MIT
#include "image/stream.h"

#include "ground/log.h"

namespace image {

namespace {

Stream checked(const char *function, const char *path, Stream f) {
    if (!f) kv_warn(function, "can't open %s\n", path);
    return f;
}

} // namespace

Stream open_picture(const char *function, const char *path) {
    return checked(function, path, file::open_plain(path));
}

Stream create_picture(const char *function, const char *path) {
    return checked(function, path, Stream(kv_fopen(path, "wb")));
}

} // namespace image
