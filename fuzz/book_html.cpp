// SPDX-License-Identifier: MIT
// Any bytes as a book of the format that the source is named for.
#include "book_file.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const fuzz::BookFile file("html");
    file.put(data, size);
    file.ask();
    return 0;
}
