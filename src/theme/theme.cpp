// SPDX-License-Identifier: MIT
// Parameters by name.
#include "kelvane/theme.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "ground/guard.h"
#include "ground/number.h"
#include "internal.h"
#include "kelvane/config.h"
#include "kelvane/events.h"
#include "theme/parameters.h"
#include "theme/source.h"

namespace {

using ground::parse_int;
using ground::saturated;

// Bits that a letter of a rectangle's flags sets.
int flag_bits(char letter) {
    switch (letter | 0x20) {
    case 'b':
        return VALIGN_BOTTOM;
    case 'c':
        return ALIGN_CENTER;
    case 'd':
        return TEXT_DOTS;
    case 'e':
        return 0x2000;
    case 'f':
        return ALIGN_JUSTIFY;
    case 'l':
        return TEXT_RTL_MIRROR;
    case 'm':
        return VALIGN_MIDDLE;
    case 'r':
        return ALIGN_RIGHT;
    case 's':
        return 0x1000;
    case 'v':
        return TEXT_ROTATE;
    default:
        return 0;
    }
}

int parse_flags(const char *letters) {
    int flags = 0;
    for (; *letters != '\0'; ++letters) flags |= flag_bits(*letters);
    return flags;
}

// Overrides the fields that the text has, in order: those missing at its end keep their defaults.
void parse_rect(const char *text, irect &r) {
    for (int *field : {&r.x, &r.y, &r.w, &r.h}) {
        if (*text == '\0') return;
        char *end;
        *field = parse_int(text, &end);
        text = std::strchr(end, ',');
        if (!text) return;
        ++text;
    }
    r.flags = parse_flags(text);
}

// A negative length runs from the start to the far edge: -1 reaches it.
void make_relative(int &start, int &length, int extent) {
    if (start < 0) start = saturated(int64_t{start} + extent);
    if (length < 0) length = saturated(int64_t{length} + extent - start + 1);
}

// A partner's own value goes before the common one.
const char *find_for_partner(const char *name) {
    const char *partner = cfg_read_string("partner", nullptr);
    const char *found = nullptr;
    if (partner && *partner != '\0')
        found = theme::source.text((std::string(name) + "." + partner).c_str());
    return found ? found : theme::source.text(name);
}

} // namespace

namespace theme {

bool is_landscape() {
    return kvstate.orientation == 1 || kvstate.orientation == 2;
}

irect screen_relative(irect r) {
    make_relative(r.x, r.w, ScreenWidth());
    make_relative(r.y, r.h, ScreenHeight());
    return r;
}

FontSpec parse_font(const char *text) {
    FontSpec spec;
    if (*text == '#') spec.antialias = 0, ++text;
    const char *comma = std::strchr(text, ',');
    spec.face.assign(text, comma ? static_cast<size_t>(comma - text) : std::strlen(text));
    if (!comma) return spec;
    spec.size = parse_int(comma + 1, nullptr, 10);
    comma = std::strchr(comma + 1, ',');
    if (comma) spec.color = static_cast<int>(std::strtoul(comma + 1, nullptr, 0));
    return spec;
}

} // namespace theme

const char *GetThemeString(const char *name, const char *deflt) {
    return ground::guarded(deflt, [&]() -> const char * {
        if (!name) return deflt;
        const char *found = nullptr;
        if (theme::is_landscape()) found = find_for_partner((std::string("^") + name).c_str());
        if (!found) found = find_for_partner(name);
        return found ? found : deflt;
    });
}

int GetThemeInt(const char *name, int deflt) {
    const char *value = GetThemeString(name, nullptr);
    return value ? parse_int(value) : deflt;
}

void kv_getthemerect(const char *name, irect *out, int x, int y, int w, int h, int flags) {
    if (!out) return;
    *out = iRect(x, y, w, h, flags);
    const char *value = GetThemeString(name, nullptr);
    if (value && *value != '\0') parse_rect(value, *out);
}

void GetThemeRect(const char *name, irect *out, int x, int y, int w, int h, int flags) {
    if (!out) return;
    kv_getthemerect(name, out, x, y, w, h, flags);
    *out = theme::screen_relative(*out);
}
