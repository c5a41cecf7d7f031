// SPDX-License-Identifier: MIT
// Finds the fonts that the open theme carries.
#include "theme/fonts.h"

#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <system_error>

#include "ground/guard.h"
#include "kelvane/files.h"
#include "kelvane/theme.h"
#include "text/text.h"
#include "theme/opened.h"
#include "theme/parameters.h"
#include "theme/source.h"

namespace theme {
namespace {

namespace fs = std::filesystem;

constexpr const char *folder = "./system/tmp/fonts";
constexpr mode_t open_to_all = 0777;

bool write_font(const std::string &path, const Block &font) {
    std::FILE *file = kv_fopen(path.c_str(), "wbe");
    if (!file) return false;
    const bool written = kv_fwrite(font.bytes.get(), 1, font.size, file) == font.size;
    return (kv_fclose(file) == 0) && written;
}

// A relative name of a font would be looked for elsewhere.
std::string full_path(const std::string &path) {
    std::error_code error;
    return fs::absolute(path, error).string();
}

// The value of a name, in landscape of its own variant first.
const char *find_value(const char *name) {
    if (!name) return nullptr;
    const char *value = nullptr;
    if (is_landscape()) value = source.text((std::string("^") + name).c_str());
    return value ? value : source.text(name);
}

} // namespace

void make_font_folder() {
    if (mkdir(folder, open_to_all) == 0 || errno != ENOENT) return;
    if (mkdir("./system/tmp", open_to_all) == 0) mkdir(folder, open_to_all);
}

void drop_extracted_fonts() {
    std::error_code error;
    bool dropped = false;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
        std::error_code ignored;
        if (!at->is_directory(ignored)) dropped |= fs::remove(at->path(), ignored);
    }
    if (dropped) text::forget_faces_in(full_path(folder) + "/");
}

std::string extract_font(const std::string &face) {
    if (face.find('/') != face.npos) return {}; // no theme writes outside the folder
    const std::string path = std::string(folder) + "/" + face + ".ttf";
    std::error_code error;
    if (!fs::exists(path, error)) {
        const Block font = unpack_resource(face);
        if (!font.bytes) return {};
        if (!write_font(path, font)) {
            fs::remove(path, error);
            return {};
        }
    }
    return full_path(path);
}

} // namespace theme

ifont *GetThemeFont(const char *name, const char *deflt) {
    return ground::guarded(nullptr, [&]() -> ifont * {
        const char *value = theme::find_value(name);
        if (!value) value = deflt;
        if (!value) return nullptr;
        const theme::FontSpec spec = theme::parse_font(value);
        const std::string own = theme::extract_font(spec.face);
        ifont *font = OpenFont((own.empty() ? spec.face : own).c_str(), spec.size, spec.antialias);
        if (font) font->color = spec.color;
        return font;
    });
}
