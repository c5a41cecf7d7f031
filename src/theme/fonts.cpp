// SPDX-License-Identifier: MIT
// Opens the fonts that a theme names, from the device or from its own file.
#include <string>

#include "ground/guard.h"
#include "kelvane/theme.h"
#include "theme/opened.h"
#include "theme/parameters.h"
#include "theme/source.h"

namespace {

// The value of a name, in landscape of its own variant first.
const char *find_value(const char *name) {
    if (!name) return nullptr;
    const char *value = nullptr;
    if (theme::is_landscape()) value = theme::source.text((std::string("^") + name).c_str());
    return value ? value : theme::source.text(name);
}

} // namespace

ifont *GetThemeFont(const char *name, const char *deflt) {
    return ground::guarded(nullptr, [&]() -> ifont * {
        const char *value = find_value(name);
        if (!value) value = deflt;
        if (!value) return nullptr;
        const theme::FontSpec spec = theme::parse_font(value);
        ifont *font = OpenFont(theme::font_name(spec.face).c_str(), spec.size, spec.antialias);
        if (font) font->color = spec.color;
        return font;
    });
}
