/* SPDX-License-Identifier: MIT */
/**
 * @file bitmaps.h
 * Bitmaps: pictures in memory that are drawn onto the canvas and copied back from it.
 *
 * A bitmap is one block of memory, freed with one free(). Whoever received it from a function that
 * says "new" owns it.
 */
#ifndef KELVANE_BITMAPS_H
#define KELVANE_BITMAPS_H

#include "api.h"

KELVANE_BEGIN_DECLS

/** Bits of ibitmap::depth. */
enum {
    BITMAP_DEPTH = 0x00FF, /**< bits a pixel: 1, 2, 4, 8, 16 or 24 */
    BITMAP_MASK = 0x8000   /**< a transparency mask follows the pixels */
};

/**
 * A picture. The rows of pixels follow the four numbers in the same block, top row first, and
 * after them the mask when there is one: rows of (width + 7) / 8 bytes, one bit a pixel, highest
 * bit first, 1 drawn and 0 left out.
 *
 * Pixels are packed from the highest bits of a byte down. Depth 1: 1 is white. Depth 2: levels 0,
 * 85, 170, 255. Depth 4: level n is the grey 17 n. Depth 8: one grey byte. Depth 16: little-endian
 * words of 5 bits red, 6 green, 5 blue. Depth 24: the bytes R, G, B.
 */
typedef struct ibitmap_s {
    unsigned short width, height; /**< in pixels */
    unsigned short depth;         /**< BITMAP_DEPTH bits and BITMAP_MASK */
    unsigned short scanline;      /**< bytes from one row to the next */
    __extension__ unsigned char data[];
} ibitmap;

/** @name Making bitmaps
 * New bitmaps have the depth of the panel: 4, or 2 on a panel of four greys.
 * @{ */
/** A new white bitmap; null for a side outside 1 to 65535 or when memory runs out. */
KELVANE_API ibitmap *NewBitmap(int w, int h);
/** A new bitmap equal to @p bm; null for null or when memory runs out. */
KELVANE_API ibitmap *CopyBitmap(const ibitmap *bm);
/** CopyBitmap() that the bitmap tracker does not hear of. */
KELVANE_API ibitmap *CopyBitmapNoTrack(const ibitmap *bm);
/**
 * A new bitmap with a part of the current canvas, whatever the clip; what lies outside the canvas
 * is white. At depth 4 the second pixel of each byte is read darker from a 24-bit canvas, at most
 * level 3.
 * @return null for a side outside 1 to 65535 or when memory runs out
 */
KELVANE_API ibitmap *BitmapFromScreen(int x, int y, int w, int h);
/**
 * BitmapFromScreen() of the canvas seen turned. Pixel (c, r) of the turned canvas is, on a canvas
 * of W by H: 0 (c, r); 1 (r, H - 1 - c); 2 (W - 1 - r, c); 3 (W - 1 - c, H - 1 - r).
 * @param rotate 0 to 3; anything else is 0
 */
KELVANE_API ibitmap *BitmapFromScreenR(int x, int y, int w, int h, int rotate);
/** @} */

/** @name Drawing bitmaps
 * Bitmaps are drawn in grey, on a 24-bit canvas too, and without the pixels that their mask leaves
 * out. A null bitmap draws nothing.
 *
 * A bitmap of depth 16 is drawn only where whole words can be copied: on an 8-bit canvas, without
 * a mask, at least 16 pixels wide after clipping, from a source x that is a multiple of 8 to an x
 * that is a multiple of 4, with scanlines that are multiples of 4 and pixels (ibitmap::data) at an
 * address that is one. Under the same conditions a
 * bitmap of depth 24 is drawn with the faster formula of kv_rgb24_to_gs().
 * @{ */
/** Draws the whole bitmap with its top left pixel at (@p x, @p y). */
KELVANE_API void DrawBitmap(int x, int y, const ibitmap *bm);
/** Draws at (@p x, @p y) the part of @p bm that starts at (@p sx, @p sy), cut to the bitmap. */
KELVANE_API void DrawBitmapArea(int x, int y, const ibitmap *bm, int sx, int sy, int w, int h);
/** Repeats @p bm over a rectangle from its top left corner; the last ones are cut. */
KELVANE_API void TileBitmap(int x, int y, int w, int h, const ibitmap *bm);
/** @} */

KELVANE_END_DECLS

#endif
