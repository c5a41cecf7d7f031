// SPDX-License-Identifier: MIT
// The fonts that are there.
#include "text/enumerate.h"

#include <algorithm>
#include <dirent.h>
#include <new>
#include <string>
#include <vector>

#include "file/directory.h"
#include "ground/fold.h"
#include "ground/guard.h"
#include "internal.h"
#include "kelvane/files.h"
#include "text/freetype.h"
#include "text/names.h"
#include "text/text.h"

namespace text {
namespace {

constexpr const char *font_extensions = "ttf,ttc,otf";
constexpr size_t extension_length = 4;
constexpr int most_faces = 10; // that a name can choose

std::vector<std::string> names; // of the list
std::vector<char *> list;       // pointers to them

// Names in the order of their letters without the extension; of equal ones the shorter first.
bool comes_before(const std::string &a, const std::string &b) {
    const size_t a_stem = a.size() - extension_length, b_stem = b.size() - extension_length;
    const int order = ground::compare_folded(a.c_str(), b.c_str(), std::min(a_stem, b_stem));
    if (order != 0) return order < 0;
    return a_stem != b_stem ? a_stem < b_stem : a < b;
}

std::vector<std::string> font_names() {
    std::vector<std::string> found;
    const file::Directory dir(kv_opendir(font_directory));
    while (const dirent *entry = kv_readdir(dir.get()))
        if (match_ext(entry->d_name, font_extensions)) found.push_back(entry->d_name);
    std::sort(found.begin(), found.end(), comes_before);
    return found;
}

// How many faces a file has; 1 when it cannot be opened.
int count_faces(const std::string &name) {
    if (!match_ext(name.c_str(), "ttc")) return 1;
    const std::string path = std::string(font_directory) + '/' + name;
    const FacePtr face = open_font_file(path.c_str(), -1);
    return face ? static_cast<int>(std::clamp<FT_Long>(face->num_faces, 1, most_faces)) : 1;
}

char **publish(std::vector<std::string> found) {
    names = std::move(found);
    list.clear();
    for (std::string &name : names) list.push_back(name.data());
    list.push_back(nullptr);
    kvstate.fontlist = list.data();
    kvstate.fontcount = static_cast<int>(names.size());
    return list.data();
}

char **empty_list() {
    static char *none[] = {nullptr};
    return none;
}

} // namespace

void reset_enumeration() {
    names.clear();
    list.clear();
    kvstate.fontlist = nullptr;
    kvstate.fontcount = 0;
}

} // namespace text

char **EnumFonts() {
    return ground::guarded_or([] { return text::publish(text::font_names()); }, text::empty_list);
}

char **EnumFontsEx() {
    const auto all_faces = [] {
        std::vector<std::string> faces;
        for (const std::string &name : text::font_names()) {
            faces.push_back(name);
            for (int i = 1; i < text::count_faces(name); ++i)
                faces.push_back(name + ':' + std::to_string(i));
        }
        return text::publish(std::move(faces));
    };
    return ground::guarded_or(all_faces, text::empty_list);
}
