// SPDX-License-Identifier: MIT
// Reads the description once and answers from memory.
#include "config/device_description.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <mutex>
#include <string_view>
#include <utility>

#include "file/stream.h"
#include "ground/fold.h"
#include "ground/guard.h"
#include "ground/lines.h"
#include "ground/number.h"
#include "kelvane/config.h"
#include "kelvane/files.h"

namespace config {
namespace {

constexpr const char *description_file = "./system/config/device.cfg";
constexpr int line_buffer = 255;  // a longer line counts as several
constexpr int most_lines = 10000; // a description has a few dozen

bool is_indent(char c) {
    return c == ' ' || c == '\t';
}
bool is_control(char c) {
    return static_cast<unsigned char>(c) < ' ';
}
bool is_white(char c) {
    return c == ' ' || is_control(c);
}

void add_line(std::forward_list<DeviceEntry> &entries, std::string_view line) {
    const size_t equals = line.find('=');
    if (equals == line.npos) return;
    using namespace ground;
    // Spaces at the end belong to a value, but not to a name.
    const std::string_view name =
        trim_right(trim_left(line.substr(0, equals), is_indent), is_white);
    const std::string_view value =
        trim_right(trim_left(line.substr(equals + 1), is_indent), is_control);
    entries.push_front({std::string(name), std::string(value)});
}

// What device.cfg says; null while it cannot be read. It is kept for ever: callers hold on to the
// values.
const std::forward_list<DeviceEntry> *description() {
    static std::mutex reading;
    static const std::forward_list<DeviceEntry> *known = nullptr;
    const std::lock_guard lock(reading);
    if (known) return known;
    if (auto read = load_device_description(description_file))
        known = new std::forward_list<DeviceEntry>(std::move(*read));
    return known;
}

const char *find_value(const char *name) {
    return ground::guarded(nullptr, [&]() -> const char * {
        const auto *entries = name ? description() : nullptr;
        return entries ? find_in_description(*entries, name) : nullptr;
    });
}

// Failures that say something about the file, and not about the moment.
bool is_lasting(int error) {
    constexpr int lasting[] = {ENOENT, ENOTDIR, EISDIR, EINVAL, EACCES, ELOOP, ENAMETOOLONG, ENXIO};
    return std::find(std::begin(lasting), std::end(lasting), error) != std::end(lasting);
}

} // namespace

std::optional<std::forward_list<DeviceEntry>> load_device_description(const char *path) {
    std::forward_list<DeviceEntry> entries;
    const file::Stream f = file::open_plain(path);
    if (!f) return is_lasting(errno) ? std::optional(entries) : std::nullopt;
    char line[line_buffer];
    for (int i = 0; i < most_lines && kv_fgets(line, sizeof line, f.get()); i++)
        add_line(entries, line);
    return ferror(f.get()) ? std::nullopt : std::optional(std::move(entries));
}

const char *find_in_description(const std::forward_list<DeviceEntry> &entries, const char *name) {
    const auto same = [name](const DeviceEntry &e) {
        return ground::compare_folded(e.name.c_str(), name) == 0;
    };
    const auto found = std::find_if(entries.begin(), entries.end(), same);
    return found == entries.end() ? nullptr : found->value.c_str();
}

} // namespace config

const char *cfg_read_string(const char *name, const char *deflt) {
    const char *value = config::find_value(name);
    return value ? value : deflt;
}

int cfg_read_int(const char *name, int deflt) {
    const char *value = config::find_value(name);
    return value ? ground::parse_int(value) : deflt;
}
