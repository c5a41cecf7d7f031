// SPDX-License-Identifier: MIT
// Reads pictures, fonts and lengths as the view opens, so that each has the theme of its time.
#include "dictionary_view/look.h"

#include <algorithm>
#include <string>

#include "kelvane/text.h"
#include "raster/bitmap.h"
#include "text/text.h"

namespace dictionary_view {
namespace {

text::FontPtr font(const char *name, int size, int leading) {
    text::FontPtr opened(OpenFont(name, std::max(size, 1), 1));
    if (opened) opened->linespacing = std::max(leading, opened->height);
    return opened;
}

int size_of(const text::FontPtr &of, int otherwise) {
    return of ? of->size : otherwise;
}

// Themes with larger text have larger articles too.
Type load_type(const keyboard::Lengths &l) {
    const theme::UiParameters &ui = theme::ui_parameters();
    const int body = std::max(l.units(50), size_of(ui.window_font, 0));
    const int label = std::max(l.units(45), size_of(ui.button_font_normal, 0));
    const int leading = body * 13 / 10;
    Type type;
    type.body_size = body;
    type.headword = font("defaultb", std::max(l.units(70), body + l.unit / 2), 0);
    type.body = font("default", body, leading);
    type.leading = type.body ? type.body->linespacing : leading;
    type.number = font("defaultb", body, leading);
    type.grammar = font("default", label, leading);
    type.oblique = font("defaulti", label, leading);
    type.label = font("defaultb", label, 0);
    type.small = font("default", std::max(l.units(40), label * 12 / 13), 0);
    return type;
}

ToolPicture tool(const std::string &name) {
    return {theme::Picture(name.c_str()), theme::Picture((name + "_a").c_str())};
}

} // namespace

const ifont *Type::oblique_for(const std::string &text) const {
    return (oblique && text::has_letters(*oblique, text.c_str()) ? oblique : grammar).get();
}

Look load_look() {
    Look look;
    static_cast<keyboard::Lengths &>(look) = keyboard::load_lengths();
    look.type = load_type(look);
    return look;
}

Toolbar load_toolbar() {
    return {.ground = theme::Picture("dic_toolbar"),
            .tools = {tool("dic_wordlist"), tool("dic_translate"), tool("dic_voice"),
                      tool("dic_keybd"), tool("dic_switch"), tool("dic_close")}};
}

PointerPictures load_pointer() {
    PointerPictures pictures{theme::Picture("context_menu_pointer"), nullptr};
    pictures.down = raster::mirrored(pictures.up.get(), MIRROR_VERTICAL);
    return pictures;
}

} // namespace dictionary_view
