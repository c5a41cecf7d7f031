// SPDX-License-Identifier: MIT
// Lists dictionaries and finds them by their names.
#include "dictionary/folders.h"

#include <iterator>
#include <string_view>

#include "file/directory.h"
#include "ground/fold.h"
#include "kelvane/dictionary.h"
#include "kelvane/files.h"

namespace dictionary {
namespace {

constexpr const char *folders[] = {"./system/dictionaries", "./system/mnt/ext1/dictionaries",
                                   "./system/mnt/ext2/dictionaries"};
constexpr const char *extension = "dic";
constexpr size_t extension_size = 4; // with its dot

std::string_view without_extension(std::string_view file) {
    return file.substr(0, file.size() - extension_size);
}

// The last of the files in a folder that have the name; empty when there is none.
std::string find_in(const char *folder, std::string_view name) {
    std::string found;
    const file::Directory directory(kv_opendir(folder));
    while (const dirent *entry = kv_readdir(directory.get())) {
        const std::string_view file = entry->d_name;
        if (!file.starts_with('.') && match_ext(entry->d_name, extension) &&
            ground::equal_folded(without_extension(file), name))
            found = std::string(folder).append("/").append(file);
    }
    return found;
}

} // namespace

// Where several have the name, the one that the list keeps.
std::string find_path(const char *name) {
    for (auto folder = std::rbegin(folders); folder != std::rend(folders); ++folder)
        if (std::string path = find_in(*folder, name); !path.empty()) return path;
    return {};
}

std::string name_of(std::string_view path) {
    return std::string(without_extension(path.substr(path.rfind('/') + 1)));
}

} // namespace dictionary

char **EnumDictionaries() {
    using namespace dictionary;
    static char **names = nullptr;
    return kv_enum_files(&names, folders[0], folders[1], folders[2], extension, 1);
}
