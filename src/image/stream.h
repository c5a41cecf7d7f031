// SPDX-License-Identifier: MIT
// Picture files as streams.
#pragma once

#include "file/stream.h"

namespace image {

using file::Stream;

// Opens a file to be read; null after saying that it cannot be opened.
Stream open_picture(const char *function, const char *path);

// Opens a file to be written; null after saying that it cannot be opened.
Stream create_picture(const char *function, const char *path);

} // namespace image
