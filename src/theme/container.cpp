// SPDX-License-Identifier: MIT
#include "theme/container.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <zlib.h>

namespace theme {
namespace {

constexpr std::string_view magic = "MarrowleafTheme";
constexpr uint8_t version = 1;
constexpr uint32_t fixed_size = 32;  // before the index
constexpr size_t entry_numbers = 12; // before the name of an entry
constexpr size_t spare_bytes = 4;
// What unpacks to more is no picture, font or text of a theme.
constexpr uint32_t largest_header = 16 << 20, largest_resource = 64 << 20;

uint32_t read_u32(std::string_view bytes, size_t at) {
    uint32_t value = 0;
    for (size_t i = 4; i-- > 0;) value = value << 8 | static_cast<uint8_t>(bytes[at + i]);
    return value;
}

std::string to_lower(std::string_view name) {
    std::string lower(name);
    for (char &c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c | 0x20);
    return lower;
}

// Bytes of the file, all of them or none.
std::string read_at(std::FILE *file, uint32_t offset, size_t size) {
    std::string bytes(size, '\0');
    if (kv_fseek(file, offset, SEEK_SET) != 0) return {};
    return kv_fread(bytes.data(), 1, size, file) == size ? bytes : std::string();
}

} // namespace

std::unique_ptr<Container> Container::open(const std::string &path) {
    std::FILE *file = kv_fopen(path.c_str(), "rbe");
    return std::unique_ptr<Container>(file ? new Container(file) : nullptr);
}

bool Container::read_header() {
    if (kv_fseek(file_.get(), 0, SEEK_END) != 0) return false;
    file_size_ = static_cast<uint64_t>(std::max(kv_ftell(file_.get()), 0L));
    const std::string fixed = read_at(file_.get(), 0, fixed_size);
    if (!fixed.starts_with(magic) || fixed[magic.size()] != version) return false;
    header_size_ = read_u32(fixed, 16);
    if (header_size_ < fixed_size || header_size_ > std::min<uint64_t>(file_size_, largest_header))
        return false;
    parameters_ = {read_u32(fixed, 20), read_u32(fixed, 24), read_u32(fixed, 28)};
    const std::string header = read_at(file_.get(), 0, header_size_);
    if (header.empty()) return false;
    read_index(std::string_view(header).substr(fixed_size));
    return true;
}

// Of two entries with one name the first counts. The index ends at an entry that is cut off.
void Container::read_index(std::string_view index) {
    while (index.size() > entry_numbers) {
        const std::string_view rest = index.substr(entry_numbers);
        const size_t length = rest.find('\0');
        const size_t field = length / 4 * 4 + 4;
        if (length == rest.npos || field > rest.size()) return;
        const Packed entry{read_u32(index, 0), read_u32(index, 4), read_u32(index, 8)};
        if (is_inside(entry)) resources_.try_emplace(to_lower(rest.substr(0, length)), entry);
        index.remove_prefix(entry_numbers + field);
    }
}

// Compressed bytes lie behind the header and in the file, and unpack to a bearable size.
bool Container::is_inside(const Packed &entry) const {
    return entry.offset >= header_size_ && entry.unpacked_size <= largest_resource &&
           uint64_t{entry.offset} + entry.packed_size <= file_size_;
}

Block Container::unpack_parameters() const {
    return is_inside(parameters_) ? unpack(parameters_) : Block{};
}

bool Container::has(std::string_view name) const {
    return resources_.contains(to_lower(name));
}

Block Container::unpack(std::string_view name) const {
    const auto found = resources_.find(to_lower(name));
    return found != resources_.end() ? unpack(found->second) : Block{};
}

Block Container::unpack(const Packed &entry) const {
    const std::string packed = read_at(file_.get(), entry.offset, entry.packed_size);
    if (packed.size() != entry.packed_size) return {};
    Block block{std::unique_ptr<uint8_t, Free>(
                    static_cast<uint8_t *>(std::malloc(entry.unpacked_size + spare_bytes))),
                entry.unpacked_size};
    if (!block.bytes) return {};
    uLongf size = entry.unpacked_size;
    if (uncompress(block.bytes.get(), &size, reinterpret_cast<const Bytef *>(packed.data()),
                   packed.size()) != Z_OK)
        return {};
    std::memset(block.bytes.get() + size, 0, entry.unpacked_size + spare_bytes - size);
    return block;
}

} // namespace theme
