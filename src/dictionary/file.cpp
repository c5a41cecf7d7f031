// SPDX-License-Identifier: MIT
// Reads the header and the sections of a dictionary.
#include "dictionary/file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <libdeflate.h>
#include <new>

#include "kelvane/files.h"

namespace dictionary {
namespace {

bool is_announced_size_bearable(uint64_t announced, uint64_t stored) {
    return announced <= largest_section && announced <= stored * best_ratio;
}

} // namespace

void File::UnpackerDeleter::operator()(libdeflate_decompressor *unpacker) const {
    libdeflate_free_decompressor(unpacker);
}

File::File(file::Stream stream)
    : stream_(std::move(stream)), unpacker_(libdeflate_alloc_decompressor()) {
    if (!unpacker_) throw std::bad_alloc();
}

std::optional<size_t> File::unpack(ByteView packed, std::span<uint8_t> to) {
    size_t size = 0;
    const auto result = libdeflate_zlib_decompress_ex(unpacker_.get(), packed.data(), packed.size(),
                                                      to.data(), to.size(), nullptr, &size);
    return result == LIBDEFLATE_SUCCESS ? std::optional(size) : std::nullopt;
}

bool File::measure() {
    errno = 0; // a seek takes an old EIO for its own
    if (kv_fseek(stream_.get(), 0, SEEK_END) != 0) return false;
    size_ = static_cast<uint64_t>(std::max(kv_ftell(stream_.get()), 0L));
    return true;
}

bool File::read(uint64_t offset, std::span<uint8_t> to) {
    if (offset > size_ || to.size() > size_ - offset) return false;
    errno = 0;
    return kv_fseek(stream_.get(), static_cast<long>(offset), SEEK_SET) == 0 &&
           kv_fread(to.data(), 1, to.size(), stream_.get()) == to.size();
}

bool File::read_header() {
    // What is asked for is read at once, and nothing else.
    if (std::setvbuf(stream_.get(), nullptr, _IONBF, 0) != 0 || !measure()) return false;
    if (!read(0, header_) || !std::equal(magic.begin(), magic.end(), header_.begin()) ||
        value(version_field) != version)
        return false;
    return value(protection_field) == 0 && value(limit_field) <= largest_container &&
           std::ranges::all_of(
               std::array{collation_field, morphology_field, keyboard_field, index_field},
               [this](Field field) { return is_bearable(field); });
}

File::Extent File::extent(Field field) const {
    const uint32_t start = value(field);
    for (size_t next = field + 4; next < header_bytes; next += 4)
        if (const uint32_t end = read_u32(&header_[next]))
            return {start, int64_t{end} - int64_t{start}};
    return {start, static_cast<int64_t>(size_) - int64_t{start}};
}

bool File::is_sound(const Extent &e) const {
    return e.size >= int64_t{section_prefix} && e.size <= static_cast<int64_t>(size_);
}

bool File::is_inside(const Extent &e) const {
    return e.start <= size_ && static_cast<uint64_t>(e.size) <= size_ - e.start;
}

// A section that is not there, or cannot be read, is refused where it is read.
bool File::is_bearable(Field field) {
    const Extent e = extent(field);
    std::array<uint8_t, section_prefix> prefix{};
    if (e.start == 0 || !is_sound(e) || !read(e.start, prefix)) return true;
    const auto stored = static_cast<uint64_t>(e.size) - section_prefix;
    return stored <= largest_section && is_announced_size_bearable(read_u32(prefix.data()), stored);
}

std::optional<Bytes> File::read_section(Field field, Packing packing) {
    const Extent e = extent(field);
    if (e.start == 0) return std::nullopt;
    if (!is_sound(e)) {
        std::fprintf(stderr, "error in section parameters, section %02x\n", field);
        return std::nullopt;
    }
    Bytes stored;
    if (is_inside(e)) stored.resize(static_cast<size_t>(e.size));
    const bool is_read = !stored.empty() && read(e.start, stored);
    const size_t announced = is_read ? read_u32(stored.data()) : 0;
    const ByteView data = is_read ? ByteView(stored).subspan(section_prefix) : ByteView();
    if (!is_read || (packing == Packing::none && announced > data.size())) {
        std::fprintf(stderr, "error reading section %02x\n", field);
        return std::nullopt;
    }
    if (packing == Packing::none) {
        stored.erase(stored.begin(), stored.begin() + section_prefix);
        stored.resize(announced);
        return stored;
    }
    Bytes unpacked(announced);
    if (unpack(data, unpacked) == announced) return unpacked;
    std::fprintf(stderr, "error decompressing section %02x\n", field);
    return std::nullopt;
}

} // namespace dictionary
