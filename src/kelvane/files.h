/* SPDX-License-Identifier: MIT */
/**
 * @file files.h
 * File access that waits for storage, retries transient errors and syncs on close.
 *
 * The device's storage may be away for a moment after a wake from sleep or while a USB connection
 * settles. These wrappers therefore wait before they touch a path below "./system/mnt/ext1",
 * "./system/mnt/ext2" or "./system/tmp/photo" (in any case of letters) until the device says that
 * storage is ready or one second has passed since the last wake, and they retry failing reads and
 * writes within that second. A damaged file system is reported to the user, at most once in 15
 * seconds, and handed to the system for checking.
 *
 * Unless a comment says otherwise, a function returns what the system call of the same name
 * returns, with the same errno, and a null path answers -1 without a call. Paths and names are
 * bytes: they need not be valid UTF-8.
 *
 * The calls may run on any thread, each stream on one at a time, while no thread opens or closes
 * the screen. A warning opens a message box, though, which belongs to the application's thread, and
 * with it every file whose storage may be damaged.
 */
#ifndef KELVANE_FILES_H
#define KELVANE_FILES_H

#include <dirent.h>
#include <stddef.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/types.h>

#include "api.h"

KELVANE_BEGIN_DECLS

/** @name Paths and directories
 * @{ */
/**
 * Creates every directory of @p path up to its last "/"; the last component is not created. Null
 * does nothing.
 */
KELVANE_API void kv_buildpath(const char *path);
/** mkdir(2). */
KELVANE_API int kv_mkdir(const char *path, mode_t mode);
/** stat(2). A null argument answers -1 with errno EFAULT. */
KELVANE_API int kv_stat(const char *path, struct stat *st);
/** access(2). A null path answers -1 with errno EFAULT. */
KELVANE_API int kv_access(const char *path, int mode);
/** unlink(2). */
KELVANE_API int kv_unlink(const char *path);
/** rmdir(2). */
KELVANE_API int kv_rmdir(const char *path);
/** truncate(2). */
KELVANE_API int kv_truncate(const char *path, off_t length);
/** rename(2). Waits for the storage of @p from only. */
KELVANE_API int kv_rename(const char *from, const char *to);
/** opendir(3), closed by kv_closedir(). Null for a null path. */
KELVANE_API DIR *kv_opendir(const char *path);
/** readdir(3). Null for a null @p dir. */
KELVANE_API struct dirent *kv_readdir(DIR *dir);
/** closedir(3). -1 for a null @p dir. */
KELVANE_API int kv_closedir(DIR *dir);
/** Writes everything that the system still holds in memory to all file systems. */
KELVANE_API void kv_sync(void);
/**
 * An addition: where an application keeps a file of its own, "./system/data/APP/NAME". The folders
 * are made, the file is not.
 * @param app the application's name: no path, and neither "." nor ".."
 * @param name of the file, or a path below the folder, without ".."; null or "": the folder itself
 * @param out gets the path
 * @param size of @p out in bytes
 * @return 1; 0, with @p out empty, for names that are none (of more than 255 bytes, with control
 *         characters), when the path does not fit and when a folder cannot be made
 */
KELVANE_API int AppDataPath(const char *app, const char *name, char *out, int size);
/** 1 when "./system/mnt/secure" is a directory, else 0. */
KELVANE_API int has_secure_storage(void);
/** @} */

/** @name Names
 * @{ */
/** Flags of kv_validate_name(). */
enum {
    KV_NAME_COMPONENT = 1, /**< no slash, no two dots at the start */
    KV_NAME_NO_DOTS = 2,   /**< no two dots in a row anywhere */
    KV_NAME_ABSOLUTE = 4,  /**< must start with a slash */
    KV_NAME_RELATIVE = 8   /**< must not start with a slash */
};
/**
 * Tells whether a name is safe to use for a file and in a command line: 1 to 1023 bytes, none
 * below 32 and none of / \ | ' " ` $ % & *. Bytes of 0x80 and above are ordinary. A slash is
 * refused whatever the flags, so a name that must be absolute is never acceptable.
 * @param flags KV_NAME_* bits
 * @return 1 when acceptable, else 0; 0 for null
 */
KELVANE_API int kv_validate_name(const char *name, int flags);
/**
 * Compares two strings without regard to the case of A to Z. All other bytes count as they are,
 * so the order is that of code points and no byte sequence is invalid. Null sorts first.
 * @return below 0, 0 or above 0, as strcmp(3)
 */
KELVANE_API int kv_strcasecmp(const char *a, const char *b);
/**
 * Looks up the extension of @p name, the text after its last ".", in a list.
 * @param exts extensions separated by ","; dots before an entry do not count, nor does case:
 *             "bmp,png" is the same as ".BMP,.PNG". Null matches nothing
 * @return the length of the extension when the list has it, else 0
 */
KELVANE_API int match_ext(const char *name, const char *exts);
/**
 * A label of a storage path for the user: "./system/mnt/ext1/Books/x.epub" becomes the translation
 * of "@DeviceMemory" (of "@SDcard" for ext2), ": " and "Books/x.epub".
 * @param path a path of more than 25 bytes below ext1 or ext2; every other path has an empty label
 * @param out receives the label; must not overlap @p path
 * @param outsize bytes of @p out: at least the length of @p path, and over the label's length + 8;
 *                otherwise @p out becomes empty
 */
KELVANE_API void Path2String(const char *path, char *out, int outsize);
/** @} */

/** @name Streams
 * Standard streams; fprintf() and its like work on them too, without the retries.
 * @{ */
/**
 * fopen(3). An open for writing on a read-only file system warns the user, asks the system for a
 * check and tries once more; an input/output error warns the user with the failing device.
 * @return the stream, closed by kv_fclose() or kv_fclose_no_sync(); null with errno when it cannot
 *         be opened, or for a null argument
 */
KELVANE_API FILE *kv_fopen(const char *path, const char *mode);
/** fread(3) with retries. @return items read; 0 for null arguments */
KELVANE_API size_t kv_fread(void *buf, size_t size, size_t n, FILE *f);
/** fwrite(3) with retries. @return items written; 0 for null arguments */
KELVANE_API size_t kv_fwrite(const void *buf, size_t size, size_t n, FILE *f);
/** fgetc(3) with retries. @return the byte; -1 at the end, on an error or for null */
KELVANE_API int kv_fgetc(FILE *f);
/** fgets(3) with retries. @return @p buf; null at the end, on an error or for null arguments */
KELVANE_API char *kv_fgets(char *buf, int n, FILE *f);
/**
 * fseek(3). When errno is EIO afterwards, the user is warned and the system asked for a check.
 * errno is not cleared before, so an EIO from an earlier call counts.
 * @return as fseek(3); 5 when errno is EIO; -1 for null
 */
KELVANE_API int kv_fseek(FILE *f, long offset, int whence);
/** ftell(3). @return the position; -1 on an error or for null */
KELVANE_API long kv_ftell(FILE *f);
/**
 * Flushes the stream, syncs its data to the disk and closes it: what was written is on the disk
 * when this returns 0.
 * @return 0; -1 with errno when data could not be written, or for null. The stream is closed in
 *         either case
 */
KELVANE_API int kv_fclose(FILE *f);
/** fclose(3), without the sync: for streams that were only read. @return -1 for null */
KELVANE_API int kv_fclose_no_sync(FILE *f);
/**
 * Reads a file once, which brings it into the system's cache.
 * @param max at most so many bytes; 0 reads all
 * @return 0; -1 when it cannot be opened
 */
KELVANE_API int kv_preload(const char *path, int max);
/** @} */

/** @name Lists and trees
 * @{ */
/**
 * Lists the files with certain extensions in up to three directories, sorted by kv_strcasecmp().
 * Names that begin with "." are left out. Of names that differ only in case the one read last
 * stays. A directory that cannot be read adds nothing; at most 1023 names are read in all.
 * @param list the caller's variable: a list it holds from an earlier call is freed and replaced. It
 *             must be null before the first call. A null @p list gives the result to the caller
 *             alone
 * @param dir1,dir2,dir3 read in this order; null ones are left out
 * @param exts extensions as in match_ext()
 * @param noext not 0: the names lose their last "." and what follows
 * @return the new list, also in *list: names in malloc(3) memory, ended by null, in an array in
 *         malloc(3) memory. Never null, except when memory runs out
 */
KELVANE_API char **kv_enum_files(char ***list, const char *dir1, const char *dir2, const char *dir3,
                                 const char *exts, int noext);

/**
 * Called for each file and directory of a walk.
 * @param path valid during the call
 * @param isdir 1 for a directory, 0 for anything else
 * @return above 1 ends the reading of the directory, and of those around it
 */
typedef int (*kv_walkproc)(const char *path, int isdir, void *ctx);
/**
 * Walks a tree and calls @p proc for what it meets, in the order of the directories. Symbolic links
 * are followed, to each directory once; a link to a directory that another link has led to, or that
 * is being walked, counts as a directory that cannot be opened. Entries whose path would reach 1025
 * bytes are left out, and so are entries that cannot be stat'ed.
 * @param dirsfirst not 0: a directory is passed before its contents, else after, and then also when
 *                  its reading was ended
 * @param withdirs not 0: @p path itself is passed too. What lies in @p path is passed in any case,
 *                 nested directories included; a @p path that is a file is passed only when set
 * @return the largest result of @p proc, at least 0 for a directory; 0 for null arguments
 */
KELVANE_API int recurse_action(const char *path, kv_walkproc proc, void *ctx, int dirsfirst,
                               int withdirs);
/** @} */

/** @name Copying and moving
 * A book may have associated files: the state that readers keep for it, of the kinds '0', '1' and
 * 'z'. The calls ending in _with_af apply to the file and then to those that exist.
 * @{ */
/**
 * Copies the contents of a plain file. A source that cannot be read to its end counts as ended
 * there.
 * @param to replaced by the whole copy when it exists, and keeps its permissions; links to it are
 *           followed. When it is @p from itself, nothing is done
 * @return 1; 0 when one of them cannot be opened, or a write or the sync at the end fails, and @p
 * to is as before: see docs/files.md
 */
KELVANE_API int copy_file(const char *from, const char *to);
/**
 * Moves a file, by copying when it cannot be renamed; only plain files are copied, and only whole
 * ones. Does nothing when the paths are equal for kv_strcasecmp(): storage cards do not tell such
 * names apart.
 * @return 1; 0 on failure, also when both are one file, and @p from stays. The copy is at @p to
 * when all that failed was to remove @p from
 */
KELVANE_API int move_file(const char *from, const char *to);
/** copy_file(), then the associated files. @return as copy_file(), of the file itself */
KELVANE_API int copy_file_with_af(const char *from, const char *to);
/** move_file(), then the associated files. @return as move_file(), of the file itself */
KELVANE_API int move_file_with_af(const char *from, const char *to);
/**
 * Removes a file, and its associated files whether or not it could be removed.
 * @return 1 when the file itself was removed, else 0
 */
KELVANE_API int unlink_file_with_af(const char *path);
/**
 * Finds an associated file: "./system/state/KIND/" and the book's path, in which a leading "./"
 * is dropped, a leading "/" becomes "%2F/", a ".." component "%2E%2E", and a "%" that begins a
 * component "%25".
 * @param kind '0', '1' or 'z'
 * @return its path, freed by the caller with free(3); null when there is none, or for bad arguments
 */
KELVANE_API char *CheckAssociatedFile(const char *path, char kind);
/**
 * The path where an associated file is kept, whether or not it exists. Creates its directories.
 * @return the path, freed by the caller with free(3); null for bad arguments
 */
KELVANE_API char *GetAssociatedFile(const char *path, char kind);
/** @} */

KELVANE_END_DECLS

#endif
