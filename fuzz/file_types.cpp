// SPDX-License-Identifier: MIT
// Any bytes as the table of file types: every row but the folders' is found by a name with its
// extension, or one before it is.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "bookinfo/type_table.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const book::TypeTable table(std::string_view(reinterpret_cast<const char *>(data), size));
    const kv_filetype *rows = table.rows();
    size_t count = 0;
    while (rows[count].extension) ++count;
    if (count < 2 || count > 256) std::abort();
    for (size_t i = 2; i < count; ++i) {
        const kv_filetype *found = table.find("name." + std::string(rows[i].extension));
        if (!found || found > rows + i) std::abort();
    }
    return 0;
}
