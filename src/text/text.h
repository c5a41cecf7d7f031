/* SPDX-License-Identifier: MIT
 * Fonts and text drawing. */
#ifndef KELVANE_TEXT_TEXT_H
#define KELVANE_TEXT_TEXT_H

#include "kelvane/canvas.h"

KELVANE_BEGIN_DECLS

/** An open font. */
typedef struct ifont_s {
    char *name;   /**< what it was opened as */
    char *family; /**< the face's own name */
    int size;     /**< pixels */
    char aa;      /**< 1: glyphs are anti-aliased */
    char isbold, isitalic;
    char _r1;
    unsigned short charset;
    unsigned short _r2;
    int color;       /**< default text colour */
    int height;      /**< of a line */
    int linespacing; /**< between baselines */
    int baseline;    /**< from the top of a line */
    void *fdata;     /**< the face; null for the font "null" */
} ifont;

/** Layout flags, also read from irect::flags. */
enum {
    ALIGN_LEFT = 0x01,
    ALIGN_CENTER = 0x02,
    ALIGN_RIGHT = 0x04,
    ALIGN_JUSTIFY = 0x08,
    VALIGN_TOP = 0x10,
    VALIGN_MIDDLE = 0x20,
    VALIGN_BOTTOM = 0x40,
    TEXT_ROTATE = 0x80,
    TEXT_DOTS = 0x200,
    TEXT_RTL_MIRROR = 0x400,
    TEXT_UNDERLINE = 0x800
};

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
