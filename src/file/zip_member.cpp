// SPDX-License-Identifier: MIT
#include "file/zip_member.h"

#include <minizip/unzip.h>
#include <utility>

namespace {

constexpr int any_case = 2;

// The current file of an archive while it is read.
class OpenMember {
  public:
    explicit OpenMember(unzFile zip) : zip_(unzOpenCurrentFile(zip) == UNZ_OK ? zip : nullptr) {}
    OpenMember(const OpenMember &) = delete;
    OpenMember &operator=(const OpenMember &) = delete;
    ~OpenMember() { close(); }

    explicit operator bool() const { return zip_ != nullptr; }

    bool read(uint8_t *bytes, size_t size) {
        while (size > 0) {
            const int got = unzReadCurrentFile(zip_, bytes, static_cast<unsigned>(size));
            if (got <= 0) return false;
            bytes += got;
            size -= static_cast<size_t>(got);
        }
        return true;
    }
    // False when the checksum of what was read is wrong.
    bool close() {
        const unzFile zip = std::exchange(zip_, nullptr);
        return zip != nullptr && unzCloseCurrentFile(zip) == UNZ_OK;
    }

  private:
    unzFile zip_;
};

} // namespace

std::optional<std::vector<uint8_t>> read_zip_member(void *zip, const char *name, size_t limit) {
    if (zip == nullptr || name == nullptr || unzLocateFile(zip, name, any_case) != UNZ_OK)
        return std::nullopt;
    unz_file_info64 info;
    if (unzGetCurrentFileInfo64(zip, &info, nullptr, 0, nullptr, 0, nullptr, 0) != UNZ_OK ||
        info.uncompressed_size > limit)
        return std::nullopt;
    OpenMember member(zip);
    if (!member) return std::nullopt;
    std::vector<uint8_t> bytes(info.uncompressed_size);
    if (!member.read(bytes.data(), bytes.size()) || !member.close()) return std::nullopt;
    return bytes;
}
