// SPDX-License-Identifier: MIT
#include "file/zip_member.h"

#include <algorithm>
#include <minizip/unzip.h>
#include <utility>

namespace {

constexpr int any_case = 2;
constexpr size_t first_piece = 4096;

// The current file of an archive while it is read.
class OpenMember {
  public:
    explicit OpenMember(unzFile zip) : zip_(unzOpenCurrentFile(zip) == UNZ_OK ? zip : nullptr) {}
    OpenMember(const OpenMember &) = delete;
    OpenMember &operator=(const OpenMember &) = delete;
    ~OpenMember() { close(); }

    explicit operator bool() const { return zip_ != nullptr; }

    // The first `size` bytes. Memory is taken as they arrive, not as they are promised.
    std::optional<std::vector<uint8_t>> read(size_t size) {
        std::vector<uint8_t> bytes;
        size_t have = 0;
        while (have < size) {
            if (have == bytes.size()) bytes.resize(std::min(size, std::max(first_piece, 2 * have)));
            const int got = unzReadCurrentFile(zip_, bytes.data() + have,
                                               static_cast<unsigned>(bytes.size() - have));
            if (got <= 0) return std::nullopt;
            have += static_cast<size_t>(got);
        }
        return bytes;
    }
    // False when the checksum of what was read is wrong.
    bool close() {
        const unzFile zip = std::exchange(zip_, nullptr);
        return zip && unzCloseCurrentFile(zip) == UNZ_OK;
    }

  private:
    unzFile zip_;
};

} // namespace

std::optional<std::vector<uint8_t>> read_zip_member(void *zip, const char *name, size_t limit) {
    if (!zip || !name || unzLocateFile(zip, name, any_case) != UNZ_OK) return std::nullopt;
    unz_file_info64 info;
    if (unzGetCurrentFileInfo64(zip, &info, nullptr, 0, nullptr, 0, nullptr, 0) != UNZ_OK ||
        info.uncompressed_size > limit)
        return std::nullopt;
    OpenMember member(zip);
    if (!member) return std::nullopt;
    auto bytes = member.read(info.uncompressed_size);
    return member.close() ? std::move(bytes) : std::nullopt;
}
