// SPDX-License-Identifier: MIT
// Zip archives, which users download: their index is read once, within limits, and what is read of
// a member never costs more than the caller allows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "file/archive_file.h"
#include "file/stream.h"

namespace file {

// What lies behind so many members or bytes of names is not there, nor is a member of a longer
// name.
inline constexpr std::size_t most_members = 65'536;
inline constexpr std::size_t most_name_bytes = 8 << 20;
inline constexpr std::size_t longest_member_name = 1023;

using MemberBytes = std::vector<uint8_t>;

// Names are found whatever the case of their letters; of equal ones the first counts.
class Archive {
  public:
    struct Member {
        std::string name;
        uint64_t size; // as its entry has it
        uint64_t position, number;
    };

    // Null when there is no archive at the path. Throws bad_alloc, as all the others.
    static std::unique_ptr<Archive> open(const char *path);

    // In the order of the archive.
    const std::vector<Member> &members() const { return members_; }
    bool contains(std::string_view name) const;
    // A member's bytes; nothing when it is missing, larger than `limit`, or not what its entry
    // promises.
    std::optional<MemberBytes> read(std::string_view name, std::size_t limit);
    // The first `count` bytes of a member, or all when there are fewer; nothing when it is missing
    // or they cannot be read. Nobody knows whether the rest is whole.
    std::optional<MemberBytes> read_start(std::string_view name, std::size_t count);

  private:
    struct Closer {
        void operator()(void *zip) const;
    };
    using Zip = std::unique_ptr<void, Closer>; // an unzFile

    explicit Archive(Stream file) : file_(std::move(file)) {}
    void read_index();
    bool add_current();
    bool go_to(std::string_view name);

    ArchiveFile file_;
    Zip zip_;
    std::vector<Member> members_;
    std::map<std::string, std::size_t> index_; // by folded name; a hash could be made to collide
    std::size_t name_bytes_ = 0;
};

// Archive::read() of an archive that an application has opened.
// @param zip an unzFile or null; its current file changes
std::optional<MemberBytes> read_member(void *zip, const char *name, std::size_t limit);

} // namespace file
