// SPDX-License-Identifier: MIT
// Opens themes and keeps the one that is open.
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "file/stream.h"
#include "ground/guard.h"
#include "ground/text_table.h"
#include "hw.h"
#include "internal.h"
#include "kelvane/files.h"
#include "kelvane/theme.h"
#include "raster/bitmap.h"
#include "raster/bitmap_rows.h"
#include "text/text.h"
#include "theme/container.h"
#include "theme/opened.h"
#include "theme/overrides.h"
#include "theme/parameter_text.h"
#include "theme/parameters.h"
#include "theme/source.h"
#include "theme/variants.h"

namespace theme {
namespace {

namespace fs = std::filesystem;

constexpr const char *folder = "./system/themes";
constexpr int deepest_of_four_greys = 2; // bits

struct Opened {
    std::unique_ptr<Container> container; // null: no theme is open
    ground::TextTable parameters;
    Overrides overrides;
    unsigned count = 0; // of themes that were opened
};

// Never destroyed: an application may ask while it ends.
Opened &opened = *new Opened;

struct Found {
    std::string path;
    std::unique_ptr<Container> container;
};

std::unique_ptr<Container> open_container(const std::string &path) {
    file::Stream file = file::open_plain(path.c_str());
    return file ? std::make_unique<Container>(std::move(file)) : nullptr;
}

Found find_theme(const std::string &name) {
    Found found{std::string(folder) + "/" + name + ".tqt", nullptr};
    // Storage that has only just appeared answers the second time.
    for (int attempt = 0; attempt < 2 && !found.container && !hw_safemode(); attempt++)
        found.container = open_container(found.path);
    if (found.container) return found;
    found.path = std::string(folder) + "/.default.tqt";
    found.container = open_container(found.path);
    return found;
}

// The theme's own name: that of the file a link leads to, else the one asked for.
std::string real_name(const Found &found, const std::string &name) {
    std::error_code error;
    const fs::path target = fs::read_symlink(found.path, error);
    return (error ? fs::path(name) : target).stem().string();
}

void close_theme() {
    opened.container.reset();
    opened.overrides.clear();
    opened.parameters.clear();
    ++opened.count;
}

void open_theme(const std::string &name) {
    Found found = find_theme(name);
    if (!found.container) return;
    const std::string real = real_name(found, name);
    std::fprintf(stderr, "OpenTheme: %s\nTheme real name: %s\n", found.path.c_str(), real.c_str());
    if (!found.container->read_header()) return;
    const Block text = found.container->unpack_parameters();
    read_parameters(reinterpret_cast<char *>(text.bytes.get()), text.size, opened.parameters);
    opened.overrides.find(real);
    opened.container = std::move(found.container);
}

const char *find_text(const char *name) {
    return ground::find_text(opened.parameters, name);
}

// Whether the record is one of a picture whose pixels and mask lie inside the block. At an odd
// width CopyBitmapDepth8To4() makes rows that are cut short by half a byte.
bool is_picture(const Block &block) {
    if (block.size < sizeof(ibitmap)) return false;
    const auto &bm = *reinterpret_cast<const ibitmap *>(block.bytes.get());
    const size_t mask = raster::has_mask(bm) ? raster::mask_bytes(bm) : 0;
    return bm.width > 0 && bm.height > 0 && raster::is_known_depth(raster::depth_of(bm)) &&
           bm.scanline >= size_t{bm.width} * static_cast<unsigned>(raster::depth_of(bm)) / 8 &&
           block.size >= sizeof(ibitmap) + raster::pixel_bytes(bm) + mask;
}

// A picture of exactly that name, but for the end of a variant, which replacements do not have.
ibitmap *find_picture(const char *name) {
    return ground::guarded(nullptr, [&]() -> ibitmap * {
        if (!opened.container) return nullptr;
        const std::string_view base =
            std::string_view(name).substr(0, std::string_view(name).rfind(':'));
        if (raster::BitmapPtr picture = opened.overrides.load(std::string(base)))
            return picture.release();
        Block block = opened.container->unpack(name, largest_picture);
        return is_picture(block) ? reinterpret_cast<ibitmap *>(block.bytes.release()) : nullptr;
    });
}

bool has_in_file(const std::string &name) {
    return (hw_depth() > deepest_of_four_greys && opened.container->has(deep_name(name))) ||
           opened.container->has(name);
}

// What the names of the open theme's fonts begin with: another one than in earlier themes, whose
// fonts may still be open.
std::string font_prefix() {
    return "theme " + std::to_string(opened.count) + "/";
}

} // namespace

void reset() {
    close_theme();
    source = {};
    drop_ui_parameters();
}

std::string font_name(const std::string &face) {
    const bool is_own = opened.container && opened.container->has(face);
    return is_own ? font_prefix() + face : face;
}

text::FontBytes unpack_font(const std::string &name) {
    const std::string prefix = font_prefix();
    if (!opened.container || !name.starts_with(prefix)) return {};
    Block font = opened.container->unpack(std::string_view(name).substr(prefix.size()));
    return {std::move(font.bytes), font.size};
}

} // namespace theme

extern "C" {

char **EnumThemes(void) {
    static char **names = nullptr;
    return kv_enum_files(&names, theme::folder, nullptr, nullptr, "tqt", 1);
}

void OpenTheme(const char *name) {
    if (!name) return;
    ground::guarded([&] {
        const std::string wanted = name; // it may be a value of the theme that is closed
        theme::source = {theme::find_picture, theme::find_text};
        text::hooks.font_bytes = theme::unpack_font;
        theme::close_theme();
        theme::open_theme(wanted);
    });                          // what was read before memory ran out stays
    theme::drop_ui_parameters(); // the new theme's are loaded when something asks
}

int IsResourcePresent(const char *name) {
    return ground::guarded(0, [&]() -> int {
        using theme::opened;
        if (!name || !opened.container) return 0;
        const std::string plain = name;
        return (theme::is_landscape() && theme::has_in_file(theme::turned_name(plain))) ||
               theme::has_in_file(plain) || opened.overrides.has(plain);
    });
}
}
