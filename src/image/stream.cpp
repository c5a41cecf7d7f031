// SPDX-License-Identifier: MIT
// Opens picture files and says what is wrong with them.
#include "image/stream.h"

#include "ground/log.h"

namespace image {

namespace {

void say_closed(const char *function, const char *path) {
    kv_warn(function, "can't open %s\n", path);
}

} // namespace

Stream open_picture(const char *function, const char *path) {
    Stream f = file::open_plain(path);
    if (!f) say_closed(function, path);
    return f;
}

bool is_open(const file::Replacement &file, const char *function, const char *path) {
    if (!file.stream()) say_closed(function, path);
    return file.stream() != nullptr;
}

} // namespace image
