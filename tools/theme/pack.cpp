// SPDX-License-Identifier: MIT
// kelvane-theme pack: a folder becomes a file, whole or not at all.
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <zlib.h>

#include "commands.h"
#include "folder.h"
#include "scale.h"
#include "theme/container.h"

namespace tool {
namespace fs = std::filesystem;
namespace {

std::string u32(size_t value) {
    std::string out;
    for (int i = 0; i < 4; ++i) out += static_cast<char>(value >> 8 * i);
    return out;
}

std::string deflated(std::string_view bytes) {
    uLongf size = compressBound(bytes.size());
    std::string packed(size, '\0');
    if (compress2(reinterpret_cast<Bytef *>(packed.data()), &size,
                  reinterpret_cast<const Bytef *>(bytes.data()), bytes.size(),
                  Z_BEST_COMPRESSION) != Z_OK)
        throw std::bad_alloc();
    packed.resize(size);
    return packed;
}

// A theme file: header, index, resources, parameter text.
std::string file_bytes(const Theme &theme) {
    size_t header = theme::file_fixed_size;
    for (const Resource &r : theme.resources)
        header += theme::file_entry_numbers + theme::file_name_field(r.name.size());
    std::string index, data;
    uint64_t unpacked = 0;
    for (const Resource &r : theme.resources) {
        const std::string packed = deflated(r.bytes);
        if (!theme::can_be_resource(r.bytes.size(), packed.size()))
            throw std::runtime_error(r.name + " is nearly empty, and too large for that");
        unpacked += r.bytes.size();
        index += u32(r.bytes.size()) + u32(header + data.size()) + u32(packed.size()) + r.name;
        index.append(theme::file_name_field(r.name.size()) - r.name.size(), '\0');
        data += packed;
    }
    const std::string text = theme.text.packed(), packed_text = deflated(text);
    std::string out(theme::file_magic);
    out += static_cast<char>(theme::file_version);
    for (const size_t n : {header, text.size(), header + data.size(), packed_text.size()})
        out += u32(n);
    out += index + data + packed_text;
    if (header > theme::largest_header || text.size() > theme::largest_text ||
        unpacked > theme::largest_theme || out.size() > UINT32_MAX)
        throw std::runtime_error("the theme is larger than a theme file can be");
    return out;
}

[[noreturn]] void fail(const fs::path &file) {
    throw std::system_error(errno, std::generic_category(), file.string());
}

// A new file beside another one, which it replaces in the end or disappears.
class Replacement {
  public:
    explicit Replacement(const fs::path &file) : file_(file), name_(file.string() + ".XXXXXX") {
        descriptor_ = mkostemp(name_.data(), O_CLOEXEC);
        if (descriptor_ < 0) fail(file);
        const mode_t mask = umask(0);
        umask(mask);
        fchmod(descriptor_, 0666 & ~mask);
    }
    Replacement(const Replacement &) = delete;
    ~Replacement() {
        if (descriptor_ < 0) return;
        close(descriptor_);
        unlink(name_.c_str());
    }
    void write(std::string_view bytes) {
        while (!bytes.empty()) {
            const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
            if (count < 0 && errno != EINTR) fail(file_);
            if (count > 0) bytes.remove_prefix(static_cast<size_t>(count));
        }
    }
    void finish() {
        if (rename(name_.c_str(), file_.c_str()) != 0) fail(file_);
        close(descriptor_);
        descriptor_ = -1;
    }

  private:
    fs::path file_;
    std::string name_;
    int descriptor_;
};

} // namespace

int pack(const fs::path &folder, const fs::path &file, int percent) {
    Mistakes mistakes;
    Theme theme = read_folder(folder, percent, mistakes);
    mistakes.print();
    if (mistakes.any()) return EXIT_FAILURE;
    if (percent != 100) scale(theme, percent);
    const std::string bytes = file_bytes(theme);
    Replacement replacement(file);
    replacement.write(bytes);
    replacement.finish();
    return EXIT_SUCCESS;
}

} // namespace tool
