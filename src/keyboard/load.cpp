// SPDX-License-Identifier: MIT
// Finds the files of layouts and keeps the user's.
#include "keyboard/load.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

#include "file/stream.h"
#include "ground/fold.h"
#include "ground/guard.h"
#include "internal.h"
#include "kelvane/config.h"
#include "kelvane/files.h"
#include "kelvane/keyboard.h"
#include "keyboard/kinds.h"

namespace keyboard {
namespace {

constexpr const char *folder = "./system/language/keyboard";
constexpr const char *language_setting = "layout";
constexpr size_t largest_file = size_t{1} << 20;
constexpr size_t longest_name = 15;
constexpr size_t code_length = 2, length_of_codes = 8; // three, with a sign between

Layouts kept_layouts;

std::optional<file::Contents> contents(const std::string &name, const char *extension) {
    const bool is_path = name.find('/') != std::string::npos;
    const std::string path = (is_path ? name : std::string(folder) + "/" + name) + extension;
    const file::Stream stream = file::open_plain(path.c_str());
    return stream ? file::read_whole(stream.get(), largest_file) : std::nullopt;
}

bool add_exact(const std::string &name, std::vector<Language> &languages) {
    const auto text = contents(name, ".kbd");
    if (!text) return false;
    const size_t before = languages.size();
    read_sections(text->view(), languages);
    if (const auto external = contents(name, ".extkbd"))
        read_external(external->view(), languages, before);
    return languages.size() > before;
}

// False when neither spelling has a file with a section.
bool add_file(std::string_view name, std::vector<Language> &languages) {
    if (name.empty()) return false;
    return add_exact(std::string(name), languages) || add_exact(ground::folded(name), languages);
}

void add_codes(std::string_view name, std::vector<Language> &languages) {
    name = name.substr(0, length_of_codes);
    for (size_t at = 0; at + code_length <= name.size(); at += code_length + 1)
        add_file(name.substr(at, code_length), languages);
}

// The language that was used last.
void choose_saved_language(Layouts &layouts) {
    const char *saved = ReadString(kvstate.cfg, language_setting, "");
    const auto found = std::find_if(
        layouts.languages.begin(), layouts.languages.end(), [&](const Language &language) {
            return ground::compare_folded(language.code.c_str(), saved, code_length) == 0;
        });
    const bool is_known = found != layouts.languages.end();
    layouts.current = is_known ? static_cast<size_t>(found - layouts.languages.begin()) : 0;
}

Layouts or_builtin(Layouts layouts) {
    if (layouts.languages.empty()) layouts = builtin_layouts();
    choose_saved_language(layouts);
    return layouts;
}

Layouts layouts_of_name(std::string_view name) {
    Layouts layouts;
    if (!add_file(name, layouts.languages)) add_codes(name, layouts.languages);
    return or_builtin(std::move(layouts));
}

} // namespace

Layouts layouts_of_file(std::string_view name) {
    Layouts layouts;
    add_file(name, layouts.languages);
    return or_builtin(std::move(layouts));
}

Layouts &user_layouts() {
    if (kept_layouts.languages.empty()) kept_layouts = or_builtin({});
    return kept_layouts;
}

Layouts layouts_for(int flags) {
    const char *special = kind_of(flags).layout;
    return special ? layouts_of_file(special) : user_layouts();
}

void choose_next_language(Layouts &layouts) {
    layouts.current = (layouts.current + 1) % layouts.languages.size();
    WriteString(kvstate.cfg, language_setting, layouts.language().code.c_str());
    SaveConfig(kvstate.cfg);
    choose_saved_language(kept_layouts);
}

void reset_layouts() {
    kept_layouts = {};
}

} // namespace keyboard

using namespace keyboard;

void LoadKeyboard(const char *name) {
    const std::string_view all = name ? name : "";
    ground::guarded([&] { kept_layouts = layouts_of_name(all.substr(0, longest_name)); });
}

char **EnumKeyboards() {
    static char **names = nullptr;
    return kv_enum_files(&names, folder, nullptr, nullptr, "kbd", 1);
}
