/* SPDX-License-Identifier: MIT */
/**
 * @file config.h
 * Settings in small text files that several processes share.
 *
 * A file holds lines of a name, "=" and a value. A handle has three layers over it, looked up in
 * this order: volatile values, which never reach the file; values written since the last save; and
 * the values read from the file. SaveConfig() locks the file, reads it again, merges what this
 * handle wrote and deleted, and writes the whole: no process loses what another one saved.
 *
 * A null handle or name is ignored: the call does nothing, or returns the caller's default. A
 * handle belongs to one thread at a time. Values are bytes that end with a NUL; names must not hold
 * "=" or a line feed, nor begin with a blank or "#", or they read back as something else.
 */
#ifndef KELVANE_CONFIG_H
#define KELVANE_CONFIG_H

#include "hash.h"

KELVANE_BEGIN_DECLS

struct ibitmap_s;

/** An open configuration file. The fields are for reading only. */
typedef struct iconfig_s {
    char *filename;      /**< as given to OpenConfig() */
    ihash hash;          /**< the file's values; the defaults until there is a file */
    ihash vhash;         /**< volatile values */
    ihash modified_hash; /**< values written since the last save */
    char **deleted_keys; /**< different names deleted since the last save or refresh;
                              null ends them */
    int changed;         /**< 1 when there is something to save */
} iconfig;

/**
 * One row of a settings screen. A table ends with a row of type 0. OpenConfig() reads the names and
 * defaults of the rows; the rest is for the screen.
 */
typedef struct iconfigedit_s {
    int type; /**< kind of the row in the low 7 bits: kinds 7 and 14 hold no value, 31 is a nested
                   table; bit 0x80 hides the row */
    struct ibitmap_s *icon;
    const char *text;
    const char *hint;
    const char *name;              /**< of the setting */
    const char *deflt;             /**< value when the file does not exist */
    const char **variants;         /**< choices, ended by null */
    struct iconfigedit_s *submenu; /**< of kind 31 */
    const char *icon_theme;        /**< name of a theme bitmap */
} iconfigedit;

/** The earlier layout of a row. OpenConfig() tells the two apart by the first int. */
typedef struct oldconfigedit_s {
    const char *text;
    const char *name;
    int type;
    const char *deflt;
    const char **variants;
} oldconfigedit;

/** @name Handles
 * @{ */
/**
 * Opens a configuration file and reads it. Missing parent directories are created; the file itself
 * is created by the first save that has something to write.
 * @param path a copy is kept
 * @param defaults values for as long as the file does not exist; may be null. A table of
 *                 oldconfigedit rows is accepted
 * @return the handle, closed by CloseConfig(); null only when memory runs out
 */
KELVANE_API iconfig *OpenConfig(const char *path, iconfigedit *defaults);
/**
 * The handle of "./system/config/global.cfg", opened with the screen; the library's own. Null
 * before that, and when it has been closed.
 */
KELVANE_API iconfig *GetGlobalConfig(void);
/**
 * Takes over what other processes have saved. Unsaved and volatile values still win; pending
 * deletions are applied to what was read, and forgotten.
 * @return 1; 0 when the file cannot be opened or read
 */
KELVANE_API int RefreshConfig(iconfig **handle);
/**
 * Merges the unsaved changes into the file; see docs/config.md for what holds between processes.
 * @return 1 when saved, or when there was nothing to save; 0 when the file cannot be opened,
 *         created or read, or would have 16 MiB or over 250,000 settings, and the changes stay for
 *         the next save; 0 also when the write or the sync fails, and then the changes live on in
 *         this handle but are not tried again
 */
KELVANE_API int SaveConfig(iconfig *c);
/** SaveConfig(), then CloseConfigNoSave(). */
KELVANE_API void CloseConfig(iconfig *c);
/** Frees the handle and forgets what was not saved. */
KELVANE_API void CloseConfigNoSave(iconfig *c);
/** @} */

/** @name Reading
 * @{ */
/**
 * @return the value, the handle's until that name is written or deleted, or the handle is
 *         refreshed, saved or closed; @p deflt itself when the name is not there
 */
KELVANE_API char *ReadString(iconfig *c, const char *name, const char *deflt);
/**
 * @return the value as strtol(3) with base 0 reads it ("16", "0x10" and "020" are equal, "abc" is
 *         0), limited to the range of int; @p deflt when the name is not there
 */
KELVANE_API int ReadInt(iconfig *c, const char *name, int deflt);
/**
 * Reads a value of WriteSecret().
 * @return the deciphered value, freed by the caller with free(3); a stored value of 160 bytes or
 *         more as it is, the handle's; @p deflt itself when the name is not there, the system
 *         service does not answer or memory runs out
 */
KELVANE_API char *ReadSecret(iconfig *c, const char *name, const char *deflt);
/** @} */

/** @name Writing
 * @{ */
/** Sets a value to be saved, and drops a volatile one of that name. A null value is ignored. */
KELVANE_API void WriteString(iconfig *c, const char *name, const char *value);
/** WriteString() of a decimal number. */
KELVANE_API void WriteInt(iconfig *c, const char *name, int value);
/**
 * Sets a value to be saved enciphered by the system service. Null, a value of more than 64 bytes,
 * and a value that the service does not encipher are ignored.
 */
KELVANE_API void WriteSecret(iconfig *c, const char *name, const char *value);
/** Sets a value that hides the file's and is never saved. A null value is ignored. */
KELVANE_API void WriteStringVolatile(iconfig *c, const char *name, const char *value);
/** WriteStringVolatile() of a decimal number. */
KELVANE_API void WriteIntVolatile(iconfig *c, const char *name, int value);
/** Removes a name in every layer, and from the file at the next save, whoever wrote it there. */
KELVANE_API void DeleteString(iconfig *c, const char *name);
/** The same as DeleteString(). */
KELVANE_API void DeleteInt(iconfig *c, const char *name);
/**
 * Empties the handle, not the file: the next save reads the file's values again and adds what was
 * written after the clear.
 */
KELVANE_API void ClearConfig(iconfig *c);
/** @} */

/** @name Device description
 * The file "./system/config/device.cfg", read once in a process, at the first call. Names compare
 * without regard to case.
 * @{ */
/** @return the value, the library's; @p deflt itself when the name is null or not there */
KELVANE_API const char *cfg_read_string(const char *name, const char *deflt);
/** @return the value read as ReadInt() does; @p deflt when the name is null or not there */
KELVANE_API int cfg_read_int(const char *name, int deflt);
/** @} */

KELVANE_END_DECLS

#endif
