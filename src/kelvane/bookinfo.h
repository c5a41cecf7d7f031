/* SPDX-License-Identifier: MIT */
/**
 * @file bookinfo.h
 * What a book says about itself: its kind, title, authors, series, genres, language, publisher,
 * annotation, ISBN, protection and cover.
 *
 * Only the start of a file is read, and for some formats its end. A file "x.fb2.zip" stands for the
 * first member of the archive. Where each format takes a field from, and the limits, is told in
 * docs/books.md. Nothing is reported: what is broken, or no book at all, has the title that its
 * name gives it.
 */
#ifndef KELVANE_BOOKINFO_H
#define KELVANE_BOOKINFO_H

#include <stdint.h>
#include <sys/stat.h>

#include "api.h"
#include "bitmaps.h"

KELVANE_BEGIN_DECLS

enum {
    BOOK_GENRES = 10,  /**< most genres of a record */
    BOOK_TYPE_NO = 255 /**< the type of what is no book: folders, and files that are not read */
};

/** What is known of a file. Texts that the file does not have are null. */
typedef struct bookinfo_s {
    int type;                 /**< of the row in the table of file types; 0 without one */
    char *typedesc;           /**< the description of that row */
    char *path;               /**< as it was asked for */
    char *filename;           /**< the title that the name of the file gives; never null */
    char *title;              /**< never null */
    char *author;             /**< all authors, joined by the separator */
    char *series;             /**< the first series that the book names */
    int numinseries;          /**< its number in that series; 0 when it has none */
    char *genre[BOOK_GENRES]; /**< from the front; null behind the last */
    ibitmap *icon;            /**< of the row, which keeps it; may be null */
    int year;                 /**< 0: no format that is read tells it */
    int64_t size;             /**< bytes of the file; 0 for folders */
    int64_t ctime;            /**< when the file was last changed, in seconds since 1970 */
    char *isbn;               /**< as the book has it; see GetBookISBN() */
    char *meta_id;            /**< by which the book tells itself from others */
    char *first_author;       /**< the first author's name, as it is sorted */
    char drm;                 /**< 1 when the book is protected, else 0 */
    char *annotation;         /**< may contain markup */
    char *lang;               /**< a code such as "en" */
    char *publisher;
    char *identifiers; /**< the elements of an EPUB package that identify the book */
} bookinfo;

/** A row of the table of file types. */
typedef struct kv_filetype_s {
    const char *extension;   /**< without its dot; empty for folders, null behind the last row */
    const char *description; /**< what users call such files */
    int type;                /**< a number, BOOK_TYPE_NO for what is no book */
    const char *program;     /**< the application that opens them */
    ibitmap *icon;           /**< the table's; may be null */
} kv_filetype;

/** @name What a book says
 * @{ */
/** GetBookInfoExt() with ", " between authors. */
KELVANE_API bookinfo *GetBookInfo(const char *path);
/**
 * Reads what a file says about itself. A file that is missing, or has no row in the table of file
 * types, has the type 0 and the title of its name. A link is followed. The same call again gives
 * the same record without a look at the file.
 * @param separator stands between authors; null is ", "
 * @return the library's record, valid until the next call with another argument; null for a null
 *         path or when memory runs out
 */
KELVANE_API bookinfo *GetBookInfoExt(const char *path, const char *separator);
/**
 * The ISBNs of a book: digits, and commas between several. Nothing else is left of what the book
 * says, not even an X.
 * @return the library's text, valid until the next call with another path; null when there is none,
 *         for what is no book and for a null path
 */
KELVANE_API char *GetBookISBN(const char *path);
/**
 * The cover of a book, in its shape in the middle of a bitmap, as the loaders of pictures.h make
 * one.
 * @param width,height pixels of the bitmap; -1 is the picture's own, anything else below 1 gives
 *                     null
 * @return a new bitmap, freed with free(); null when there is no cover that can be read
 */
KELVANE_API ibitmap *GetBookCover(const char *path, int width, int height);
/** @} */

/** @name Kinds of files
 * @{ */
/**
 * The table of file types: folders, the folder of photos, and the rows of
 * "./system/config/extensions.cfg", which is read on first use.
 * @return the library's, ended by a row whose extension is null; null when memory runs out
 */
KELVANE_API const kv_filetype *GetSupportedFileTypes(void);
/** FileTypeExt() without the state of the file. */
KELVANE_API const kv_filetype *FileType(const char *path);
/**
 * The row for a path: the first one for folders, and for all paths and links to paths that begin
 * with "ANY:"; the second one for the folder of photos; otherwise the first whose extension ends
 * the name in any case of letters. A link is followed once; a path that ends in ".zip" has the name
 * of the first file in the archive.
 * @param st receives the state of the file, zeroes when there is none; may be null
 * @return null for a file that is missing or of no known kind, and for null
 */
KELVANE_API const kv_filetype *FileTypeExt(const char *path, struct stat *st);
/** @} */

KELVANE_END_DECLS

#endif
