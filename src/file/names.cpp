// SPDX-License-Identifier: MIT
// Names of files: comparison, extensions, validation and labels.
#include "kelvane/files.h"

#include <cstdio>
#include <cstring>
#include <string_view>

#include "file/hooks.h"
#include "ground/fold.h"

namespace {

constexpr std::size_t max_name_length = 1023;
constexpr std::string_view refused_characters = "/\\|'\"`$%&*";

// The text after the last dot of the last component; null when there is none.
const char *find_extension(const char *name) {
    const char *dot = std::strrchr(name, '.');
    return dot && !std::strchr(dot, '/') ? dot + 1 : nullptr;
}

bool is_refused(char c) {
    return static_cast<unsigned char>(c) < 32 ||
           refused_characters.find(c) != refused_characters.npos;
}

// The translation key of the storage that holds `path`; null when it lies elsewhere.
const char *find_storage_label(const char *path) {
    if (std::strncmp(path, "./system/mnt/ext1", 17) == 0) return "@DeviceMemory";
    if (std::strncmp(path, "./system/mnt/ext2", 17) == 0) return "@SDcard";
    return nullptr;
}

} // namespace

int kv_strcasecmp(const char *a, const char *b) {
    if (!a || !b) return (a != nullptr) - (b != nullptr);
    return ground::compare_folded(a, b);
}

int match_ext(const char *name, const char *exts) {
    const char *extension = name ? find_extension(name) : nullptr;
    if (!extension || !exts) return 0;
    const std::size_t length = std::strlen(extension);
    for (const char *entry = exts; entry; entry = std::strchr(entry, ',')) {
        entry += std::strspn(entry, ".,");
        if (std::strcspn(entry, ",") == length &&
            ground::compare_folded(entry, extension, length) == 0)
            return static_cast<int>(length);
    }
    return 0;
}

int kv_validate_name(const char *name, int flags) {
    if (!name || !*name) return 0;
    const std::string_view text = name;
    const bool absolute = text.front() == '/';
    if ((flags & KV_NAME_RELATIVE) && absolute) return 0;
    if ((flags & KV_NAME_ABSOLUTE) && !absolute) return 0;
    if ((flags & KV_NAME_COMPONENT) && text.starts_with("..")) return 0;
    if ((flags & KV_NAME_NO_DOTS) && text.find("..") != text.npos) return 0;
    if (text.size() > max_name_length) return 0;
    for (char c : text)
        if (is_refused(c)) return 0;
    return 1;
}

void Path2String(const char *path, char *out, int outsize) {
    if (!out || outsize < 1) return;
    *out = 0;
    const auto room = static_cast<std::size_t>(outsize);
    const std::size_t length = path ? std::strlen(path) : 0;
    if (length <= 25 || room < length) return;
    const char *key = find_storage_label(path);
    if (!key) return;
    const char *storage = file_hooks.translate(key);
    const char *rest = path + 17;
    if (*rest == '/') ++rest;
    const std::size_t label = std::strlen(storage) + 2 + std::strlen(rest);
    if (label + 8 < room) std::snprintf(out, room, "%s: %s", storage, rest);
}
