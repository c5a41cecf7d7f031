// SPDX-License-Identifier: MIT
// Resolves aliases and styles to the files of fonts.
#include "text/names.h"

#include "ground/fold.h"
#include "internal.h"
#include "text/text.h"

namespace text {
namespace {

struct DefaultName {
    const char *alias;
    const char *own; // when none is configured
    const char *configured;
};

constexpr int styles = 4;

// In the order of Style.
const DefaultName (&default_names())[styles] {
    static const DefaultName names[styles] = {{"default", regular_font, kvstate.font},
                                              {"defaultb", bold_font, kvstate.fontb},
                                              {"defaulti", italic_font, kvstate.fonti},
                                              {"defaultbi", bold_italic_font, kvstate.fontbi}};
    return names;
}

const DefaultName *find_alias(const char *name) {
    for (const DefaultName &entry : default_names())
        if (ground::compare_folded(entry.alias, name) == 0) return &entry;
    return nullptr;
}

// A setting that names an alias again names nothing.
const char *target(const DefaultName &entry) {
    const char *name = entry.configured;
    return *name != '\0' && !find_alias(name) ? name : entry.own;
}

// Takes ":2" off a name; "" and what is no digit mean the first face.
int cut_face_index(std::string &name) {
    const size_t colon = name.rfind(':');
    if (colon == name.npos || colon + 2 < name.size()) return 0;
    const char digit = colon + 1 < name.size() ? name[colon + 1] : '0';
    name.resize(colon);
    return digit >= '0' && digit <= '9' ? digit - '0' : 0;
}

std::string in_directory(const char *directory, const std::string &name, const char *suffix) {
    return std::string(directory) + '/' + name + suffix;
}

} // namespace

const char *default_font(Style style) {
    return target(default_names()[static_cast<int>(style)]);
}

std::string resolved_name(const char *name) {
    const DefaultName *alias = find_alias(name);
    return alias ? target(*alias) : name;
}

std::vector<FontFile> font_files(const std::string &name) {
    std::string file = name;
    const int index = cut_face_index(file);
    if (file.starts_with('/')) return {{file, index}};
    std::vector<FontFile> files;
    // The user's fonts and the system's lie in one directory here, which is searched once.
    for (const char *suffix : {"", ".ttf", ".TTF"})
        files.push_back({in_directory(font_directory, file, suffix), index});
    for (const char *otherwise : {default_font(Style::regular), regular_font})
        for (const char *suffix : {".ttf", ".TTF"})
            files.push_back({in_directory(font_directory, otherwise, suffix), 0});
    return files;
}

} // namespace text
