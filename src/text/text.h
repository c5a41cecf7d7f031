// SPDX-License-Identifier: MIT
// What other areas need of fonts and text beyond the public names.
#pragma once

#include "kelvane/text.h"

namespace text {

// The library's own fonts; "default", "defaultb", "defaulti" and "defaultbi" stand for them where
// the settings name no others.
inline constexpr const char *regular_font = "DejaVuSans";
inline constexpr const char *bold_font = "DejaVuSans-Bold";
inline constexpr const char *italic_font = "DejaVuSans-Oblique";
inline constexpr const char *bold_italic_font = "DejaVuSans-BoldOblique";

// Makes what GetFont() answered current again, in a colour; null: no font is current.
void restore_font(ifont *f, int color);

// What this area asks of upper ones. `is_rtl` tells whether the interface runs right to left.
struct Hooks {
    int (*is_rtl)() = nullptr;
};
extern Hooks hooks;

<<<<<<< HEAD
/** Opens a font; null when there is none of that name. See CloseFont(). */
ifont *OpenFont(const char *name, int size, int aa);
/** Releases a font; null does nothing. No font is current when it was. */
void CloseFont(ifont *f);
/** Makes @p f current, null keeps the current one; colour -1 takes the font's own. */
void SetFont(const ifont *f, int color);
/** The current font, or null. */
ifont *GetFont(void);
/** How much bolder than designed glyphs are drawn, 0 to 100. */
void SetTextStrength(int n);

/** Draws text inside a rectangle. @return the first byte that did not fit */
char *DrawTextRect(int x, int y, int w, int h, const char *s, int flags);
/** DrawTextRect() of a record with its flags. */
char *DrawTextRect2(const irect *r, const char *s);

KELVANE_END_DECLS

#ifdef __cplusplus
namespace text {

/** Makes what GetFont() answered current again, in a colour; null: no font is current. */
void restore_font(ifont *f, int color);

} // namespace text
#endif

#endif
=======
// Closes what the library itself opened and forgets everything, once the screen is closed. Fonts
// that applications still hold keep their faces.
void reset();

} // namespace text
>>>>>>> ba7876d (Open fonts, measure, draw and lay out text with FreeType and FriBidi)
