// SPDX-License-Identifier: MIT
// Reads the index of a theme file with distrust and unpacks what is asked for.
#include "theme/container.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <zlib.h>

#include "ground/fold.h"

namespace theme {
namespace {

constexpr size_t spare_bytes = 4;
// Most themes are read whole at once.
constexpr size_t head_size = 16 << 10;

uint32_t read_u32(std::string_view bytes, size_t at) {
    uint32_t value = 0;
    for (size_t i = 4; i-- > 0;) value = value << 8 | static_cast<uint8_t>(bytes[at + i]);
    return value;
}

} // namespace

// Reads the start of the file, and finds its size.
bool Container::read_head() {
    head_.resize(head_size);
    head_.resize(kv_fread(head_.data(), 1, head_size, file_.get()));
    file_size_ = head_.size();
    if (file_size_ < head_size) return true;
    errno = 0; // a seek takes an old EIO for its own
    if (kv_fseek(file_.get(), 0, SEEK_END) != 0) return false;
    file_size_ = static_cast<uint64_t>(std::max(kv_ftell(file_.get()), 0L));
    return true;
}

// Bytes of the file, all of them or none.
std::string Container::read_at(uint32_t offset, size_t size) const {
    if (offset <= head_.size() && size <= head_.size() - offset) return head_.substr(offset, size);
    std::string bytes(size, '\0');
    errno = 0;
    if (kv_fseek(file_.get(), offset, SEEK_SET) != 0) return {};
    return kv_fread(bytes.data(), 1, size, file_.get()) == size ? bytes : std::string();
}

bool Container::read_header() {
    if (!read_head()) return false;
    const std::string fixed = read_at(0, file_fixed_size);
    if (!fixed.starts_with(file_magic) || fixed[file_magic.size()] != file_version) return false;
    header_size_ = read_u32(fixed, 16);
    if (header_size_ < file_fixed_size ||
        header_size_ > std::min<uint64_t>(file_size_, largest_header))
        return false;
    parameters_ = {read_u32(fixed, 20), read_u32(fixed, 24), read_u32(fixed, 28)};
    const std::string header = read_at(0, header_size_);
    if (header.empty()) return false;
    read_index(std::string_view(header).substr(file_fixed_size));
    return true;
}

// Of two entries with one name the first counts. The index ends at an entry that is cut off.
void Container::read_index(std::string_view index) {
    while (index.size() > file_entry_numbers) {
        const std::string_view rest = index.substr(file_entry_numbers);
        const size_t length = rest.find('\0');
        const size_t field = file_name_field(length);
        if (length == rest.npos || field > rest.size()) return;
        const Packed entry{read_u32(index, 0), read_u32(index, 4), read_u32(index, 8)};
        add(rest.substr(0, length), entry);
        index.remove_prefix(file_entry_numbers + field);
    }
}

void Container::add(std::string_view name, const Packed &entry) {
    const bool fits = is_inside(entry) && entry.unpacked_size <= largest_theme - unpacked_size_;
    if (!fits || !resources_.try_emplace(ground::folded(name), entry).second) {
        ++left_out_;
        return;
    }
    unpacked_size_ += entry.unpacked_size;
    names_.emplace_back(name);
}

// Compressed bytes lie behind the header and in the file, and they and what they unpack to are of a
// bearable size.
bool Container::is_inside(const Packed &entry) const {
    return entry.offset >= header_size_ &&
           can_be_resource(entry.unpacked_size, entry.packed_size) &&
           uint64_t{entry.offset} + entry.packed_size <= file_size_;
}

Block Container::unpack_parameters() const {
    const bool is_text = is_inside(parameters_) && parameters_.unpacked_size <= largest_text;
    return is_text ? unpack(parameters_) : Block{};
}

bool Container::has(std::string_view name) const {
    return resources_.contains(ground::folded(name));
}

Block Container::unpack(std::string_view name, uint32_t most) const {
    const auto found = resources_.find(ground::folded(name));
    const bool fits = found != resources_.end() && found->second.unpacked_size <= most;
    return fits ? unpack(found->second) : Block{};
}

Block Container::unpack(const Packed &entry) const {
    const std::string packed = read_at(entry.offset, entry.packed_size);
    if (packed.size() != entry.packed_size) return {};
    Block block{ground::HeapPtr<uint8_t>(
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
