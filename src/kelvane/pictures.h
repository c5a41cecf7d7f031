/* SPDX-License-Identifier: MIT */
/**
 * @file pictures.h
 * PNG, JPEG and TIFF files: loaded as bitmaps for the panel, and saved from bitmaps.
 *
 * A loaded picture is a new bitmap of the panel's depth (4, or 2 on a panel of four greys), without
 * a mask, freed by the caller with free(). The picture is turned into greys, scaled bilinearly into
 * a rectangle of the bitmap, adjusted, and dithered when the theme's number "use_dithering" is not
 * 0; around the rectangle the bitmap is white, or has the frame colour.
 *
 * Without `proportional` the rectangle is the whole bitmap. With it the picture keeps its shape:
 * it fills the requested width or height and is centred in the other direction, unless the load
 * flags say otherwise.
 *
 * A loader that fails says why on standard error and returns null; it never returns a part of a
 * picture. What it accepts is told in docs/pictures.md.
 */
#ifndef KELVANE_PICTURES_H
#define KELVANE_PICTURES_H

#include "api.h"
#include "bitmaps.h"

KELVANE_BEGIN_DECLS

/** Bits of SetLoadImageFlags(). */
enum {
    LOAD_LEFT = 0x01,      /**< at the left edge; wins over LOAD_RIGHT */
    LOAD_RIGHT = 0x04,     /**< moves the picture down, not right, by the width that is left over */
    LOAD_FIT_WIDTH = 0x08, /**< as wide as requested; the bitmap is no taller than the picture */
    LOAD_TOP = 0x10,       /**< at the top edge; wins over LOAD_BOTTOM */
    LOAD_BOTTOM = 0x40     /**< at the bottom edge */
};

/** @name How the next picture is placed
 * @{ */
/**
 * Sets LOAD_ bits for the next proportional load of the calling thread that succeeds, which sets
 * them back to 0. What a bit moves out of the bitmap is cut off.
 */
KELVANE_API void SetLoadImageFlags(int flags);
/**
 * Sets the colour around the picture, 0x00RRGGBB or -1 for none, for the next call of LoadJPEG() or
 * LoadTIFF(), which sets it back to -1 even when it fails.
 */
KELVANE_API void SetLoadFrameColor(int color);
/** @} */

/** @name Loading
 * Sizes are pixels of the new bitmap; -1 is the picture's own width or height, anything else below
 * 1 gives null. A null path gives null.
 * @{ */
/**
 * Loads a JPEG file. Pictures at least twice as large as requested are decoded at 1/2, 1/4 or 1/8
 * of their size.
 * @param br brightness in percent, 100 unchanged: br - 100 is added to every grey
 * @param co contrast in percent, 100 unchanged: greys move so much nearer to or further from 128
 * @param proportional not 0: keeps the picture's shape
 * @return a new bitmap or null
 */
KELVANE_API ibitmap *LoadJPEG(const char *path, int width, int height, int br, int co,
                              int proportional);
/** Loads the first picture of a TIFF file; as LoadJPEG(). */
KELVANE_API ibitmap *LoadTIFF(const char *path, int width, int height, int br, int co,
                              int proportional);
/** LoadPNGStretch() at the picture's own size. */
KELVANE_API ibitmap *LoadPNG(const char *path, int dither);
/**
 * Loads a PNG file, transparent parts on white. Its greys are darkened by a fixed curve. Colours
 * without transparency, and palettes, are weighed with red and blue exchanged.
 * @param proportional not 0: keeps the picture's shape
 * @param dither has no effect: the theme decides
 * @return a new bitmap or null
 */
KELVANE_API ibitmap *LoadPNGStretch(const char *path, int width, int height, int proportional,
                                    int dither);
/** @} */

/** @name Any picture
 * Additions. The format of a file is told by its bytes: PNG, JPEG, TIFF or BMP; see
 * docs/pictures.md for the kinds of each. A picture is turned as its EXIF data say, transparent
 * parts are white, and a colour has the same grey in each format: (77 R + 151 G + 28 B) >> 8. The
 * load flags, the frame colour and the theme have no say.
 * @{ */
/** How LoadPicture() brings a picture to a size. */
enum {
    PICTURE_FIT = 0,    /**< in its shape, as large as the size allows: the bitmap may be smaller */
    PICTURE_COVER = 1,  /**< in its shape, cut at two edges, so that it fills the whole size */
    PICTURE_STRETCH = 2 /**< as wide and as high as asked for, whatever its shape is */
};
/**
 * Loads a picture.
 * @param w,h size in pixels; -1: the picture's own, as it is shown; anything else below 1 gives
 *            null
 * @param how a PICTURE_ value; any other is PICTURE_FIT
 * @param dither not 0: the greys are dithered to those of the panel; 0: each is cut to one of them
 * @return a new bitmap of the panel's depth, to be freed; null, with a message on standard error,
 *         when the file cannot be opened, is damaged, of another kind or unreasonably large. A null
 *         path gives null
 */
KELVANE_API ibitmap *LoadPicture(const char *path, int w, int h, int how, int dither);
/**
 * The size that LoadPicture() gives a picture by itself: as it is shown. Reads the beginning of the
 * file only: so a picture that is damaged further on, or of a kind of its format that LoadPicture()
 * does not read, has a size all the same.
 * @param w,h set, to 0 when the result is 0; each may be null
 * @return 1; 0 when it is none of these pictures or cannot be read, without a message
 */
KELVANE_API int GetPictureSize(const char *path, int *w, int *h);
/** @} */

/** @name Saving
 * The mask is not saved. A null path or bitmap gives 0. A file of that name stays as it is until
 * the new one is whole, and when that fails: see docs/files.md.
 * @{ */
/**
 * Saves a bitmap as a grey PNG of 8 bits. Any depth but 2 is read as depth 4; rows that are too
 * short for that continue in the next one.
 * @return 1; 0 when the file cannot be written
 */
KELVANE_API int SavePNG(const char *path, const ibitmap *bm);
/**
 * Saves the greys of a bitmap of any depth as a grey JPEG.
 * @param quality 1 to 100; limited to that
 * @return 1; 0 when the file cannot be written
 */
KELVANE_API int SaveJPEG(const char *path, const ibitmap *bm, int quality);
/** @} */

KELVANE_END_DECLS

#endif
