/* SPDX-License-Identifier: MIT */
/**
 * @file canvas.h
 * The canvas, its clip, and the drawing primitives.
 *
 * Everything draws into the current canvas and only inside its clip. Drawing never fails: what
 * lies outside is dropped, and nothing is drawn without a canvas.
 */
#ifndef KELVANE_CANVAS_H
#define KELVANE_CANVAS_H

#include "api.h"

KELVANE_BEGIN_DECLS

/** The four greys of the device; any 0x00RRGGBB is a colour. */
enum { BLACK = 0x000000, DGRAY = 0x555555, LGRAY = 0xAAAAAA, WHITE = 0xFFFFFF };

/** A rectangle. */
typedef struct irect_s {
    int x, y;  /**< top left pixel */
    int w, h;  /**< size in pixels */
    int flags; /**< alignment and style bits for text and menus; drawing ignores it */
} irect;

/**
 * A raster of pixels. Pixel (x, y) is at addr + y * scanline + x * (depth >> 3): one grey byte at
 * depth 8, the bytes R, G, B at depth 24. The record does not own its memory. The clip may reach
 * beyond the canvas; memory outside the canvas is never touched.
 */
typedef struct icanvas_s {
    int width, height;   /**< in pixels */
    int scanline;        /**< bytes from one row to the next */
    int depth;           /**< bits a pixel, 8 or 24 */
    int clipx1, clipx2;  /**< leftmost and rightmost column that may be written, inclusive */
    int clipy1, clipy2;  /**< top and bottom row that may be written, inclusive */
    unsigned char *addr; /**< the first byte of row 0 */
} icanvas;

/** A colour substitution for InvertAreaMap(): from_color[i] becomes to_color[i]. */
typedef struct icolor_map_s {
    int *from_color; /**< size colours */
    int *to_color;   /**< size colours */
    int size;
} icolor_map;

/** What a grey conversion helper reads and writes. */
struct kv_img_conv {
    void *src;         /**< first row of the source */
    void *dest;        /**< first row of the destination; must not overlap the source */
    int width, height; /**< in pixels */
    int src_scanline;  /**< bytes from one source row to the next */
    int dest_scanline; /**< bytes from one destination row to the next */
};

/** A rectangle by value. */
KELVANE_API irect iRect(int x, int y, int w, int h, int flags);

/** @name Canvas and clip
 * @{ */

/** Draws into @p c from now on; null means the screen. The record must outlive its use. */
KELVANE_API void SetCanvas(icanvas *c);
/** The current canvas; null before the screen is open. */
KELVANE_API icanvas *GetCanvas(void);
/** Makes the whole current canvas white, whatever the clip. */
KELVANE_API void ClearScreen(void);
/**
 * Limits drawing to a rectangle. A negative @p w means that the rectangle ends at @p x, and so for
 * @p h and @p y. The rectangle may lie outside the canvas.
 */
KELVANE_API void SetClip(int x, int y, int w, int h);
/**
 * The clip as it is kept: a negative size was turned around, so @p x is the leftmost column and
 * @p w the positive width. All 0 without a canvas. Null pointers are left out.
 */
KELVANE_API void GetClip(int *x, int *y, int *w, int *h);
/** SetClip() of a record; null does nothing. */
KELVANE_API void SetClipRect(const irect *r);
/** The clip as a record. */
KELVANE_API irect GetClipRect(void);
/**
 * @p r fitted to the clip, each axis by itself: x stays when it lies between the clip's left edge
 * and its right edge + 1, otherwise it becomes the left edge; w is cut only where the new x plus w
 * passes the right edge. An x moved to the right keeps its w: the result may then be wider than
 * what both share. Null gives an empty record.
 */
KELVANE_API irect MergeClipRect(const irect *r);
/** @} */

/** @name Pixels and areas
 * @{ */
/** Sets one pixel, when it lies inside the clip. */
KELVANE_API void DrawPixel(int x, int y, int color);
/** Fills a rectangle. */
KELVANE_API void FillArea(int x, int y, int w, int h, int color);
/** FillArea() of a record; null does nothing. */
KELVANE_API void FillAreaRect(const irect *r, int color);
/** Complements every pixel. */
KELVANE_API void InvertArea(int x, int y, int w, int h);
/**
 * Complements only the pixels in the panel's blackest and whitest level. At depth 24 such a pixel
 * becomes the neutral grey opposite to its own grey.
 */
KELVANE_API void InvertAreaBW(int x, int y, int w, int h);
/**
 * A map of @p size colours, all 0xFFFFFFFF; null for a size below 1 or when memory runs out. See
 * ColorMapDestroy().
 */
KELVANE_API icolor_map *ColorMapCreate(int size);
/** Frees a map and clears the caller's pointer; null, or a pointer to null, does nothing. */
KELVANE_API void ColorMapDestroy(icolor_map **m);
/**
 * On a 24-bit canvas replaces every colour that @p map names and complements the others; a null
 * or empty map complements all. On an 8-bit canvas the map is ignored.
 */
KELVANE_API void InvertAreaMap(int x, int y, int w, int h, const icolor_map *map);
/** Draws every second pixel (x + y even) in @p color: a checkerboard that dims by half. */
KELVANE_API void DimArea(int x, int y, int w, int h, int color);
/** @} */

/** @name Lines and shapes
 * @{ */
/** A straight line; both ends are drawn. */
KELVANE_API void DrawLine(int x1, int y1, int x2, int y2, int color);
/** A line of which only every @p step th pixel is drawn. A step below 1 is a programming error. */
KELVANE_API void DrawLineEx(int x1, int y1, int x2, int y2, int color, int step);
/** A line of @p fill pixels drawn and @p space left out in turn; the end is always drawn. */
KELVANE_API void DrawDashLine(int x1, int y1, int x2, int y2, int color, int fill, int space);
/** The outline of a rectangle, one pixel thick. */
KELVANE_API void DrawRect(int x, int y, int w, int h, int color);
/** An outline three pixels thick with cut corners. */
KELVANE_API void DrawSelection(int x, int y, int w, int h, int color);
/**
 * A filled disc of radius @p r around (@p x0, @p y0), 2 r + 1 rows high. From radius 2 on it is two
 * pixels wider than high.
 */
KELVANE_API void DrawCircle(int x0, int y0, int r, int color);
/**
 * Diagonal lines @p step pixels apart; nothing for a step below 1. In rows whose y is a multiple
 * of the step the first pixel lies one column right of the rectangle.
 */
KELVANE_API void DrawDiagonalHatch(int x, int y, int w, int h, int step, int color);
/** DrawDiagonalHatch() without the pixels for which @p check answers non-zero; null draws all. */
KELVANE_API void DrawDiagonalHatchLimits(int x, int y, int w, int h, int step, int color,
                                         int (*check)(int x, int y));
/** @} */

/** @name Grey conversion
 * Convert rows of pixels to grey bytes. A null record, null buffers and sizes below 1 do nothing.
 * @{ */
/** 16-bit pixels, red in the high bits: min(255, B5 + 5 (G5 + R4)). */
KELVANE_API void kv_rgb565_to_gs(const struct kv_img_conv *conv);
/** kv_rgb565_to_gs() with each component passed through a power curve. */
KELVANE_API void kv_rgb565_to_gs_with_gamma(const struct kv_img_conv *conv, double gamma);
/** The plain variant of kv_rgb565_to_gs_with_gamma(): same result. */
KELVANE_API void kv_rgb565_to_gs_with_gamma_c(const struct kv_img_conv *conv, double gamma);
/** 24-bit pixels b0, b1, b2: min(255, (b2 >> 3) + 5 ((b0 >> 4) + (b1 >> 3))). */
KELVANE_API void kv_rgb24_to_gs(const struct kv_img_conv *conv);
/** 16-bit pixels of which the low byte v counts: two bytes, 0 and 5 (v >> 6) + (v & 31) mod 256. */
KELVANE_API void kv_gray4_to_gs(const struct kv_img_conv *conv);
/** 4-bit greys, high nibble first: n becomes 17 n. */
KELVANE_API void kv_gs4_to_gs(const struct kv_img_conv *conv);
/** Grey bytes: copies the rows. */
KELVANE_API void kv_gs_to_gs(const struct kv_img_conv *conv);
/** @} */

KELVANE_END_DECLS

#endif
