// SPDX-License-Identifier: MIT
// Indexes an archive with minizip and reads members within limits.
#include "file/archive.h"

#include <algorithm>
#include <minizip/unzip.h>
#include <utility>

#include "ground/fold.h"

namespace file {
namespace {

constexpr int any_case = 2;
constexpr size_t first_piece = 4096;
constexpr uint64_t best_ratio = 1032; // of deflate: an entry that promises more is made up

// The current file of an archive while it is read.
class OpenMember {
  public:
    explicit OpenMember(unzFile zip) : zip_(unzOpenCurrentFile(zip) == UNZ_OK ? zip : nullptr) {}
    OpenMember(const OpenMember &) = delete;
    OpenMember &operator=(const OpenMember &) = delete;
    ~OpenMember() { close(); }

    explicit operator bool() const { return zip_ != nullptr; }

    // The first `size` bytes. Memory is taken as they arrive, not as they are promised.
    std::optional<MemberBytes> read(size_t size) {
        MemberBytes bytes;
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
    // False when the checksum of what was read to the end is wrong.
    bool close() {
        const unzFile zip = std::exchange(zip_, nullptr);
        return zip && unzCloseCurrentFile(zip) == UNZ_OK;
    }

  private:
    unzFile zip_;
};

// The size of the current file, when its entry can be true.
std::optional<uint64_t> promised_size(unzFile zip) {
    unz_file_info64 info;
    if (unzGetCurrentFileInfo64(zip, &info, nullptr, 0, nullptr, 0, nullptr, 0) != UNZ_OK ||
        info.uncompressed_size / best_ratio > info.compressed_size)
        return std::nullopt;
    return info.uncompressed_size;
}

std::optional<MemberBytes> read_current(unzFile zip, size_t size) {
    OpenMember member(zip);
    if (!member) return std::nullopt;
    auto bytes = member.read(size);
    return member.close() ? std::move(bytes) : std::nullopt;
}

std::optional<MemberBytes> read_whole_current(unzFile zip, size_t limit) {
    const auto size = promised_size(zip);
    return size && *size <= limit ? read_current(zip, *size) : std::nullopt;
}

} // namespace

void Archive::Closer::operator()(void *zip) const {
    unzClose(zip);
}

std::unique_ptr<Archive> Archive::open(const char *path) {
    Stream file = open_plain(path);
    if (!file) return nullptr;
    std::unique_ptr<Archive> archive(new Archive(std::move(file)));
    zlib_filefunc64_def calls = archive->file_.calls();
    archive->zip_.reset(unzOpen2_64(path, &calls));
    if (!archive->zip_) return nullptr;
    archive->read_index();
    return archive;
}

void Archive::read_index() {
    for (int at = unzGoToFirstFile(zip_.get()); at == UNZ_OK; at = unzGoToNextFile(zip_.get()))
        if (!add_current()) return;
}

// False when the index ends here.
bool Archive::add_current() {
    unz_file_info64 info;
    unz64_file_pos place;
    char name[longest_member_name + 1];
    if (members_.size() == most_members || name_bytes_ > most_name_bytes - sizeof name ||
        unzGetCurrentFileInfo64(zip_.get(), &info, name, sizeof name, nullptr, 0, nullptr, 0) !=
            UNZ_OK ||
        unzGetFilePos64(zip_.get(), &place) != UNZ_OK)
        return false;
    if (info.size_filename >= sizeof name) return true;
    name_bytes_ += info.size_filename;
    index_.try_emplace(ground::folded(name), members_.size());
    members_.push_back(
        {name, info.uncompressed_size, place.pos_in_zip_directory, place.num_of_file});
    return true;
}

bool Archive::contains(std::string_view name) const {
    return index_.contains(ground::folded(name));
}

bool Archive::go_to(std::string_view name) {
    const auto found = index_.find(ground::folded(name));
    if (found == index_.end()) return false;
    const Member &member = members_[found->second];
    const unz64_file_pos place{member.position, member.number};
    return unzGoToFilePos64(zip_.get(), &place) == UNZ_OK;
}

std::optional<MemberBytes> Archive::read(std::string_view name, size_t limit) {
    return go_to(name) ? read_whole_current(zip_.get(), limit) : std::nullopt;
}

std::optional<MemberBytes> Archive::read_start(std::string_view name, size_t count) {
    const auto size = go_to(name) ? promised_size(zip_.get()) : std::nullopt;
    return size ? read_current(zip_.get(), std::min<uint64_t>(*size, count)) : std::nullopt;
}

std::optional<MemberBytes> read_member(void *zip, const char *name, size_t limit) {
    if (!zip || !name || unzLocateFile(zip, name, any_case) != UNZ_OK) return std::nullopt;
    return read_whole_current(zip, limit);
}

} // namespace file
