// SPDX-License-Identifier: MIT
// Picture files as streams.
#pragma once

#include "file/replacement.h"
#include "file/stream.h"

namespace image {

using file::Stream;

// Opens a file to be read; null after saying that it cannot be opened.
Stream open_picture(const char *function, const char *path);

// Whether a file is open to be written; false after saying that it cannot be opened.
bool is_open(const file::Replacement &file, const char *function, const char *path);

} // namespace image
