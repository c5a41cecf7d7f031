/* SPDX-License-Identifier: MIT */
/**
 * @file text.h
 * Fonts, measuring, drawing lines and laying text out in rectangles.
 *
 * A font is a face at a size. The current font and the current text colour (SetFont()) hold until
 * they are changed. Without a current font, and with the font "null", nothing is drawn, a string is
 * 10 pixels wide for each of its bytes, and a layout is as high as the screen.
 *
 * Text is UTF-8. What is not well formed, and characters beyond U+FFFF, count as one U+FFFD each.
 * These characters are codes, not text:
 *
 * | code    | meaning                                                        | width         |
 * |---------|----------------------------------------------------------------|---------------|
 * | 1-9     | goes on in font 1 to 9 of RegisterFontList(), to the line's end | 0             |
 * | 10      | ends the line                                                  | 0             |
 * | 13, 173 | nothing (173: soft hyphen)                                     | 0             |
 * | 14, 15  | with #TEXT_MARKS: #TEXT_HOLD, #TEXT_HEADING                    | 0             |
 * | 17-23   | symbol 1, 2, 3, 4, 5, 8, 9 of DrawSymbol()                     | symbol's + 2  |
 *
 * Hebrew, Arabic and their kin are drawn from right to left with joined letters. Chinese and
 * Japanese characters that a face lacks are taken from the font "fireflysung"; other ones from the
 * default font of the same style.
 *
 * docs/text.md shows all of it with pictures.
 */
#ifndef KELVANE_TEXT_H
#define KELVANE_TEXT_H

#include "canvas.h"

KELVANE_BEGIN_DECLS

/** An open font. Only color, height and linespacing may be changed by its owner. */
typedef struct ifont_s {
    char *name;    /**< what it was opened as; of a default font, the name that this stands for */
    char *family;  /**< the face's own name */
    int size;      /**< pixels, as asked for */
    char aa;       /**< 1: glyphs are anti-aliased */
    char isbold;   /**< 1: the face is bold */
    char isitalic; /**< 1: the face is italic */
    char _r1;
    unsigned short charset; /**< encoding id of the face's character map */
    unsigned short _r2;
    int color;       /**< text colour; black when opened; -1: codes 1-9 keep the current one */
    int height;      /**< of a line, pixels */
    int linespacing; /**< between the baselines of two lines; equals height when opened */
    int baseline;    /**< from the top of a line to its baseline, pixels */
    void *fdata;     /**< the shared face; null for the font "null" */
} ifont;

/** Flags of the layout in rectangles, also read from irect::flags. */
enum {
    ALIGN_LEFT = 0x01,       /**< lines start at the left edge: the default */
    ALIGN_CENTER = 0x02,     /**< lines are centred */
    ALIGN_RIGHT = 0x04,      /**< lines end at the right edge */
    ALIGN_JUSTIFY = 0x08,    /**< spaces widen so that every line but a paragraph's last is full */
    VALIGN_TOP = 0x10,       /**< the text starts at the top: the default */
    VALIGN_MIDDLE = 0x20,    /**< the text is centred vertically */
    VALIGN_BOTTOM = 0x40,    /**< the text ends at the bottom */
    TEXT_ROTATE = 0x80,      /**< the text runs upwards; width and height swap their roles */
    TEXT_DOTS = 0x200,       /**< a last line that lacks the rest of the text ends in "..." */
    TEXT_RTL_MIRROR = 0x400, /**< left and right swap when the interface runs right to left */
    TEXT_UNDERLINE = 0x800,  /**< each line is underlined */
    /* Additions, for text that goes on from page to page. With TEXT_DOTS, behind which nothing goes
     * on, only TEXT_WHOLE_NUMBERS and the fonts of TEXT_MARKS count. */
    /** The last line, too, ends at a word, whatever the alignment is. */
    TEXT_WHOLE_WORDS = 0x1000000,
    /**
     * No line ends within a number, such as "4,312", "-5" or "10/12", that fits on one; also with
     * the signs of print: U+2212, U+2019, and the spaces U+00A0 and U+202F.
     */
    TEXT_WHOLE_NUMBERS = 0x2000000,
    /**
     * The codes #TEXT_HOLD and #TEXT_HEADING are none of the text; without this flag they are as
     * wide as a symbol and empty.
     */
    TEXT_MARKS = 0x4000000,
    /** No page ends behind the first line of a paragraph, or before its last one. */
    TEXT_NO_WIDOWS = 0x8000000,
    /**
     * Empty lines that follow a page belong to it: the next one does not begin with them. A line of
     * spaces, carriage returns, soft hyphens and codes that draw nothing is an empty one.
     */
    TEXT_NO_EMPTY_TOP = 0x10000000
};

/**
 * An addition: codes that count for their paragraph, with #TEXT_MARKS, in functions that lay text
 * out in rectangles and pages.
 */
enum {
    /**
     * The font codes 1 to 9 behind it hold to the line feed, and not only to the end of the line
     * that they stand on.
     */
    TEXT_HOLD = 14,
    /**
     * At the beginning of a paragraph: it is a heading, all of whose lines are on one page with the
     * text that follows them, as far as they fit on one. Lines before the code are as others.
     */
    TEXT_HEADING = 15
};

/** @name Fonts
 * @{ */
/**
 * Opens a font.
 * @param name "default", "defaultb", "defaulti" or "defaultbi" (in any case): the configured
 *        regular, bold, italic and bold italic font. "null": a font without a face. Otherwise a
 *        file: an absolute path, or a name in "./system/fonts" with or without ".ttf" or ".TTF"; a
 *        colon and a digit at its end choose a face of the file. A file that is not there is
 *        replaced by the default font.
 * @param size pixels, 1 to 16384; a face without outlines takes the nearest size that it has
 * @param aa 1: anti-aliased, unless the settings say otherwise
 * @return the font, to be closed by CloseFont(); null for a null name and when nothing opens,
 *         with a message on standard error
 */
KELVANE_API ifont *OpenFont(const char *name, int size, int aa);
/**
 * Releases a font; null does nothing. No font is current when it was the current one, and it leaves
 * the registered list.
 */
KELVANE_API void CloseFont(ifont *f);
/**
 * Makes a font current; null keeps the current one.
 * @param color of the text from now on; -1: the font's own
 */
KELVANE_API void SetFont(const ifont *f, int color);
/** The current font, or null. */
KELVANE_API ifont *GetFont(void);
/**
 * Registers the fonts that the codes 1 to 9 choose: code n the n-th. The array is copied, the fonts
 * stay the caller's. Null, or a count below 1, registers none.
 */
KELVANE_API void RegisterFontList(ifont **fonts, int count);
/** How much bolder than designed glyphs are, 0 to 640: 1/64 pixel on every side. */
KELVANE_API void SetTextStrength(int n);
/**
 * The files of "./system/fonts" that are fonts (.ttf, .ttc, .otf), as OpenFont() takes them, sorted
 * by name without regard to case and extension.
 * @return a null-terminated list; the library's, until the next call of this or EnumFontsEx()
 */
KELVANE_API char **EnumFonts(void);
/** EnumFonts(), with every further face of a file that has several as "file:1", "file:2", ... */
KELVANE_API char **EnumFontsEx(void);
/** @} */

/** @name Measuring
 * In the current font, in pixels.
 * @{ */
/** The width of a character; of any below 32 that of a symbol. Kept modulo 256. */
KELVANE_API int CharWidth(unsigned short c);
/** The width of a string on one line, with kerning; 0 for null. */
KELVANE_API int StringWidth(const char *utf8);
/** StringWidth() of the first @p len bytes, without joining Arabic letters. */
KELVANE_API int StringWidthExt(const char *utf8, int len);
/**
 * The width that a text needs when its lines are at most @p maxwidth wide.
 * @param font used for this call; null: the current one
 * @return the width of the text, or of its widest line when it is wider than @p maxwidth;
 *         @p maxwidth when a word is wider
 */
KELVANE_API int GetMultilineStringWidth(const char *utf8, int maxwidth, const ifont *font,
                                        int flags);
/** The height of a text in lines of width @p w; 0 for an empty one. */
KELVANE_API int TextRectHeight(int w, const char *utf8, int flags);
/** TextRectHeight() of what fits into @p h; of a text, at least one line. */
KELVANE_API int TextRectHeightEx(int w, int h, const char *utf8, int flags);
/** The width of the widest line when a text is broken into lines of at most @p w. */
KELVANE_API int MinimalTextRectWidth(int w, const char *utf8);
/** @} */

/** @name Drawing
 * In the current font and colour.
 * @{ */
/** Draws one line; (@p x, @p y) is its top left. */
KELVANE_API void DrawString(int x, int y, const char *utf8);
/** Draws one line upwards: the left edge of its first letter is @p y, its top is @p x. */
KELVANE_API void DrawStringR(int x, int y, const char *utf8);
/**
 * Lays text out in a rectangle and draws it. Only the first 100000 characters count, and only what
 * is laid out is read, but for the first letter, which tells the direction.
 *
 * However small or empty the rectangle is, it takes a line, and a line takes a character; what does
 * not fit is drawn beyond the edges. Where only the dots of #TEXT_DOTS fit, they stand for the
 * first character. So pages come to an end: each takes at least one character of the text.
 * @param flags of the enumeration above
 * @return the first byte that was not drawn: where the next page starts; the end of the text
 *         without a font; @p utf8 when memory runs out
 */
KELVANE_API char *DrawTextRect(int x, int y, int w, int h, const char *utf8, int flags);
/** DrawTextRect() of a record with its flags. */
KELVANE_API char *DrawTextRect2(const irect *r, const char *utf8);
/** DrawTextRect() that also tells the height used; @p height may be null. */
KELVANE_API char *DrawTextRect3(int x, int y, int w, int h, const char *utf8, int flags,
                                int *height);
/**
 * An addition: where DrawTextRect() would end, with nothing drawn.
 * @return the first byte that does not fit; null for null, @p utf8 when memory runs out
 */
KELVANE_API char *TextRectEnd(int w, int h, const char *utf8, int flags);
/**
 * An addition: lays a text out in pages, in the current font, with nothing drawn. Page n is what
 * DrawTextPage() draws from @p starts[n] on, and ends where the next one starts; all of them joined
 * are the text.
 * @param first_h height of the first page, which may have a title above it
 * @param h height of all others
 * @param starts gets the byte where each page starts; null only counts, and ignores @p max
 * @param max pages to look for; to go on later, begin again with the last of these pages, which
 *        knows nothing of a font that its paragraph holds
 * @return how many pages there are, at most @p max; 0 for null, an empty text and when memory runs
 *         out; 1 without a font
 */
KELVANE_API int Paginate(const char *utf8, int w, int first_h, int h, int flags, int *starts,
                         int max);
/**
 * An addition: DrawTextRect() of a text from a byte on, which goes on in the font that a code
 * before it holds (#TEXT_HOLD). In a text without that code both are the same.
 * @param start a byte of the text at which a character begins; 0 for a negative one, and the end of
 *        the text for one behind it
 * @return as DrawTextRect(); the byte @p start when memory runs out
 */
KELVANE_API char *DrawTextPage(int x, int y, int w, int h, const char *utf8, int start, int flags);
/**
 * Draws a symbol as wide as two thirds of the font's baseline, on a line whose top is @p y.
 * @param symbol 1 left, 2 right, 3 up, 4 down, 5 OK, 8 back, 9 menu; others draw nothing
 */
KELVANE_API void DrawSymbol(int x, int y, int symbol);
/** @} */

/** @name Characters
 * For text that is already 16-bit characters.
 * @{ */
/**
 * Chooses the font for the next character: of a Chinese or Japanese one that the current face lacks
 * the font "fireflysung" becomes current, of any other one the font before it again.
 * @param current the font that is current
 * @param color the colour to draw in
 */
KELVANE_API void select_need_font(unsigned short c, ifont *current, int color);
/** Replaces U+02D0 by ":" and U+02CC by U+200B. @return the new character; 0 when it stays */
KELVANE_API int SubstBrokenChar(unsigned short *c);
/**
 * The direction of a text: 0 when nothing in it runs right to left, 1 when some of it does (or may,
 * as Arabic numbers) but it begins left to right, 2 when it begins right to left.
 */
KELVANE_API int rtl_direction(const unsigned short *text, int len);
/**
 * A line in the order in which it is drawn, as part of a text that runs left to right. Joins no
 * letters.
 * @return a copy of @p len characters, to be freed; null when memory runs out
 */
KELVANE_API unsigned short *rtl_convert_l(const unsigned short *text, int len);
/** rtl_convert_l() as part of a text that runs right to left. */
KELVANE_API unsigned short *rtl_convert_r(const unsigned short *text, int len);
/**
 * Joins Arabic letters, in place: each is replaced by the form it has between its neighbours. A
 * ligature takes the place of its second letter; U+FEFF, which is invisible, that of its first.
 */
KELVANE_API void arabic_shape(unsigned short *text, int len);
/** @} */

KELVANE_END_DECLS

#endif
