// SPDX-License-Identifier: MIT
#include "image/stream.h"

#include "ground/log.h"

namespace image {

namespace {

void say_closed(const char *function, const char *path) {
    kv_warn(function, "can't open %s\n", path);
}

} // namespace

Stream open_picture(const char *function, const char *path) {
    Stream f(kv_fopen(path, "rb"));
    if (!f) say_closed(function, path);
    return f;
}

bool is_open(const file::Replacement &file, const char *function, const char *path) {
    if (!file.stream()) say_closed(function, path);
    return file.stream() != nullptr;
}

} // namespace image
