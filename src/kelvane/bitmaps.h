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

struct irect_s;

/** Bits of ibitmap::depth. */
enum {
    BITMAP_DEPTH = 0x00FF, /**< bits a pixel: 1, 2, 4, 8, 16 or 24 */
    BITMAP_MASK = 0x8000   /**< a transparency mask follows the pixels */
};

/**
 * A picture. The rows of pixels follow the four numbers in the same block, top row first, and
 * after them the mask when there is one: rows of (width + 7) / 8 bytes, one bit a pixel, highest
 * bit first, 1 drawn and 0 left out. When a scanline is too short for the width, the pixels at the
 * end of a row lie in the next row, and those of the last one in four spare bytes behind it, which
 * such a bitmap must have.
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
 * address that is one. Under the same conditions a bitmap of depth 24 is drawn with the faster
 * formula of kv_rgb24_to_gs(). Stretching takes any depth anywhere.
 * @{ */
/** Draws the whole bitmap with its top left pixel at (@p x, @p y). */
KELVANE_API void DrawBitmap(int x, int y, const ibitmap *bm);
/** Draws at (@p x, @p y) the part of @p bm that starts at (@p sx, @p sy), cut to the bitmap. */
KELVANE_API void DrawBitmapArea(int x, int y, const ibitmap *bm, int sx, int sy, int w, int h);
/** Repeats @p bm over a rectangle from its top left corner; the last ones are cut. */
KELVANE_API void TileBitmap(int x, int y, int w, int h, const ibitmap *bm);
/**
 * Scales @p bm into a rectangle. On an axis that shrinks a pixel gets the average of what it
 * covers; on one that grows it lies between the two nearest pixels. Of a bitmap with a mask only
 * what the mask shows counts, and a pixel is drawn when at least half of it is shown.
 * @param flags handed to kv_stretch(), where none has a meaning
 */
KELVANE_API void StretchBitmap(int x, int y, int w, int h, const ibitmap *bm, int flags);

/** How DrawBitmapRect() places a bitmap. Of several ways the first in this order counts. */
enum {
    BITMAP_FIT = 0x8,        /**< scaled, with its proportions, in the middle of the other axis */
    BITMAP_STRETCH = 0x1000, /**< scaled to the whole rectangle */
    BITMAP_TILE = 0x2000,    /**< repeated over the rectangle */
    BITMAP_CENTER = 0x2,     /**< in the middle between left and right */
    BITMAP_RIGHT = 0x4,      /**< at the right; otherwise at the left */
    BITMAP_MIDDLE = 0x20,    /**< in the middle between top and bottom */
    BITMAP_BOTTOM = 0x40     /**< at the bottom; otherwise at the top */
};
/**
 * Draws @p bm in a rectangle by the BITMAP_* bits of @p flags. A bitmap that is not scaled and does
 * not fit is cut: on both sides with a middle bit, else on the side opposite to its place.
 *
 * With BITMAP_FIT the bitmap fills the height if its height / width is above the rectangle's, and
 * the width otherwise. Both ratios are whole numbers, so a bitmap whose ratio is equal when rounded
 * down may reach beyond the rectangle at the top and at the bottom.
 */
KELVANE_API void DrawBitmapRect(int x, int y, int w, int h, const ibitmap *bm, int flags);
/** DrawBitmapRect() of a record with its flags; null does nothing. */
KELVANE_API void DrawBitmapRect2(const struct irect_s *r, const ibitmap *bm);

/**
 * The scaler behind StretchBitmap(): scales an area of pixels that need not be a bitmap.
 * @param src the first row of pixels, packed as in a bitmap; null draws nothing
 * @param depth 1, 2, 4, 8, 16 or 24; others draw nothing
 * @param sx,sy,sw,sh the area, which the caller vouches for; nothing is drawn for a negative corner
 *                    or sides outside 1 to 65535
 * @param scanline bytes from one row to the next
 * @param dx,dy,dw,dh the rectangle of the current canvas
 * @param flags reserved; any value is accepted
 * @param mask the first row of a mask as in a bitmap; null shows everything
 * @param mask_scanline bytes from one row of the mask to the next
 */
KELVANE_API void kv_stretch(const unsigned char *src, int depth, int sx, int sy, int sw, int sh,
                            int scanline, int dx, int dy, int dw, int dh, int flags,
                            const unsigned char *mask, int mask_scanline);
/** @} */

/** @name Dithering
 * Bring an area of the current canvas to a few greys, evenly from black to white; colours become
 * their grey.
 * @{ */
/** Ways of DitherArea(). */
enum {
    DITHER_THRESHOLD = 0, /**< each pixel becomes the nearest grey */
    DITHER_PATTERN = 1,   /**< by an ordered pattern of 8 by 8, the same in neighbouring areas */
    DITHER_DIFFUSION = 2  /**< the error of a pixel goes on to its neighbours in the area */
};
/**
 * Dithers an area.
 * @param levels how many greys, brought into 2 to 16
 * @param method DITHER_*; others do nothing
 */
KELVANE_API void DitherArea(int x, int y, int w, int h, int levels, int method);
/** DitherArea() to 16 greys by diffusion. */
KELVANE_API void QuickFloyd16Dither(int x, int y, int w, int h);
/** Dithers to black and white by an ordered pattern of 4 by 4 pixels. */
KELVANE_API void DitherAreaPattern4x4(int x, int y, int w, int h);
/** The same by a pattern of 8 by 8: finer steps of grey in a coarser pattern. */
KELVANE_API void DitherAreaPattern8x8(int x, int y, int w, int h);
/** @} */

/** @name Changing bitmaps
 * A null bitmap or buffer does nothing, or gives null.
 * @{ */
/** Bits of MirrorBitmap(). */
enum {
    MIRROR_HORIZONTAL = 4, /**< left and right change places; not at depth 16 */
    MIRROR_VERTICAL = 8    /**< top and bottom change places */
};
/** Mirrors a bitmap and its mask in place. */
KELVANE_API void MirrorBitmap(ibitmap *bm, int flags);
/**
 * Gives a bitmap of at most 8 bits a mask that leaves out the pixels of one level. The bitmap is
 * replaced: the old one is freed and *bm is the new one, or stays when memory runs out. A former
 * mask is forgotten.
 * @param level the number stored for a pixel, below 2 to the depth
 */
KELVANE_API void SetTransparentColor(ibitmap **bm, int level);
/**
 * A new bitmap of depth 8, with the mask of @p bm. The pixels are read as nibbles, also of a bitmap
 * of another depth if it has a mask.
 * @return null for a bitmap without mask whose depth is not 4, or when memory runs out
 */
KELVANE_API ibitmap *CopyBitmapDepth4To8(const ibitmap *bm);
/**
 * A new bitmap of depth 4 and scanline width / 2, rounded down: at an odd width the last pixel of a
 * row is joined (or) to the first byte of the next row, and reads back mixed with it.
 * @return null for any depth but 8, for a bitmap with a mask, or when memory runs out
 */
KELVANE_API ibitmap *CopyBitmapDepth8To4(const ibitmap *bm);
/**
 * A new bitmap of @p dw by @p dh with an area of a bitmap of depth 4, interpolated between pixels
 * in 10-bit fractions; the corner pixels of both coincide. The mask is not asked. A row is read
 * from a byte that lies @p sx times the whole pixels of a step behind its first one; what lies
 * behind the last row reads as black.
 * @param sx,sy the corner of the area; negative ones give null
 * @param sw,sh its size, cut to the bitmap
 * @param dw,dh 2 to 65535
 * @return null after a line in the log for another depth, for an area outside the bitmap or when
 *         memory runs out
 */
KELVANE_API ibitmap *BitmapStretchCopy(const ibitmap *bm, int sx, int sy, int sw, int sh, int dw,
                                       int dh);
/**
 * Turns each row round by @p n pixels, n times depth / 8 whole bytes: to the right for a positive
 * @p n, else to the left. The mask stays.
 */
KELVANE_API void MoveBitmapRight(ibitmap *bm, int n);
/**
 * Turns the rows round: down by @p n rows, or up for a negative @p n. Going up, at most as many
 * rows as the framebuffer is high come back at the bottom. The mask stays.
 */
KELVANE_API void MoveBitmap(ibitmap *bm, int n);
/** Turns @p len bytes round: the last @p n come first. A negative @p n turns to the left. */
KELVANE_API void RotateRight(unsigned char *buf, int len, int n);
/** Turns @p len bytes round: the first @p n come last. A negative @p n turns to the right. */
KELVANE_API void RotateLeft(unsigned char *buf, int len, int n);
/** @} */

/** @name BMP files
 * See docs/pictures.md for what is accepted.
 * @{ */
/**
 * Reads an uncompressed BMP file of 16 or 256 colours, bottom row first, into a new bitmap of the
 * panel's depth. Pixels of the colour blue 0x40, green 0x80, red 0x80 are left out by the mask.
 * @return null after a message on standard error when the file cannot be opened, is larger than
 *         max_bmp_size() or is not of that kind; null when it is damaged or memory runs out
 */
KELVANE_API ibitmap *LoadBitmap(const char *path);
/**
 * LoadBitmap() of a member of an archive.
 * @param zip an archive opened with minizip: an unzFile. Its current file changes
 * @param name the member, in any case of letters
 * @return null as LoadBitmap(), and silently for a member that is missing, below 33 bytes, above 32
 *         MiB or that cannot be read in full
 */
KELVANE_API ibitmap *zLoadBitmap(void *zip, const char *name);
/**
 * Writes a bitmap of depth 2, 4 or 8 without its mask: as 16 greys, or 256 at depth 8. Makes the
 * directories of @p path. A file of that name stays as it is until the new one is whole.
 * @return 1 when every byte is on the disk, else 0; 0 for null and for other depths
 */
KELVANE_API int SaveBitmap(const char *path, const ibitmap *bm);
/** The largest BMP file that LoadBitmap() reads: three bytes for each panel pixel, and 1024. */
KELVANE_API int max_bmp_size(void);
/** @} */

KELVANE_END_DECLS

#endif
