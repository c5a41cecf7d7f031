// SPDX-License-Identifier: MIT
// Members of zip archives as bytes in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

// Reads a member, whose name may be in any case of letters. Its declared size decides, as nobody
// knows better before reading, but above `limit` nothing is read.
// @param zip an unzFile; its current file changes
// @return nothing when the member is missing, too large, or not what its entry promises
std::optional<std::vector<uint8_t>> read_zip_member(void *zip, const char *name, size_t limit);
