/* SPDX-License-Identifier: MIT */
/**
 * @file theme.h
 * How everything looks: pictures, fonts, colours, sizes and texts by name.
 *
 * One theme is open at a time. Every look-up takes the caller's default and answers with it when
 * the theme has nothing under the name; without a theme that is always so. In landscape the theme's
 * value for "^name" goes before the one for "name". A theme file, the names and what replaces its
 * pictures are described in docs/themes.md.
 */
#ifndef KELVANE_THEME_H
#define KELVANE_THEME_H

#include "api.h"
#include "bitmaps.h"
#include "canvas.h"
#include "pager.h"
#include "text.h"

KELVANE_BEGIN_DECLS

/** How an application is operated; see GetAppStyle(). */
typedef struct iappstyle_s {
    int app_style; /**< 1 keys, 2 touch, 3 both; 0 neither */
} iappstyle;

/** The look of the task manager. The fonts are the caller's to close; they may be null. */
typedef struct itaskmgr_properties_s {
    int border_size, title_height;
    int button_exit_indent_horizontal;
    ifont *title_font, *task_font, *task_title_font;
    int task_height;
    int style;
    int profile_present, profile_height;
    ifont *profile_font;
    int shortcut_height, shortcut_width;
    ifont *shortcut_font;
    int width;
    int separator_size;
    int indent_from_border;
    int background_style;
    int separator_color, border_color;
} itaskmgr_properties;

/** The look of the application caption. The font is the caller's to close; it may be null. */
typedef struct icaption_properties_s {
    ifont *font;
    int height;
    int background_color;
    irect landscape, portrait; /**< of the title, not screen-relative; height 0: the caption's */
    int uppercase;             /**< not 0: the title is shown in capitals */
} icaption_properties;

/** How a selection is marked; see DrawPickOut(). */
typedef struct iselection_style_s {
    int style;
    int background_color, background_style;
    int border_size, border_radius;
    int indent_horizontal, indent_left, indent_right;
} iselection_style;

/** The look of context menus. The fonts are the caller's to close; they may be null. */
typedef struct icontext_menu_properties_s {
    ifont *font_normal, *font_selected, *font_disabled;
    int background_color_normal, background_color_disabled;
    int blackout;
    int item_height, item_border_indent_horizontal;
    int separator_indent_horizontal, separator_indent_vertical;
    int separator_height, separator_style, separator_color, separator_frequency;
    int marker_height, marker_indent_horizontal, marker_style, marker_color;
    int border_size, border_radius;
    int title_height;
    int enable_pointer;
    int font_normal_color, font_selected_color, font_disabled_color;
    int bullet_show, bullet_style;
    int item_border_indent_vertical;
    int background_style;
} icontext_menu_properties;

/**
 * Lists the themes in "./system/themes".
 * @return their names in alphabetical order, ended by null, the library's until the next call; null
 *         when memory runs out
 */
KELVANE_API char **EnumThemes(void);
/**
 * Opens "./system/themes/NAME.tqt", or ".default.tqt" there, in place of the theme that is open,
 * and drops the fonts, colours and button pictures that the library keeps of a theme. A file that
 * is no theme leaves none open. Texts of GetThemeString() end here; pictures and fonts stay with
 * whom they were given to. Null is ignored.
 *
 * Some things stay as they were at their first use. Until the screen closes: the pieces, margins
 * and title-bar buttons of frames, the corners of borders, the caption, the pager of a null ipager
 * and the key-lock icon; until another selection is drawn: the style of the last one; for good:
 * GetAppGlobalStyle().
 */
KELVANE_API void OpenTheme(const char *name);

/**
 * The picture of a name: in landscape "^name:4" and "^name", then "name:4" and "name", in each case
 * from the archive or directories that replace pictures before the theme itself.
 * @param deflt the answer when there is none. One that is really a text "*(W,H)" gives a new white
 *              bitmap of that size, each side at least 1; without H it is as high as wide. Null for
 * a size that no bitmap has
 * @return a new bitmap, freed by the caller with free(3), or @p deflt itself
 */
KELVANE_API ibitmap *GetResource(const char *name, ibitmap *deflt);
/** GetResource() of the name that resolve_resource_name() finds, of at most 254 bytes. */
KELVANE_API ibitmap *GetKeyResource(const char *name, ibitmap *deflt);
/**
 * 1 when the theme, an archive or a directory has a picture of that name. Names that end in ":4"
 * count on panels of more than four greys only. 0 for null.
 */
KELVANE_API int IsResourcePresent(const char *name);

/** The text of a parameter, the library's until the next OpenTheme(), or @p deflt itself. */
KELVANE_API const char *GetThemeString(const char *name, const char *deflt);
/** The text of a parameter as strtol(3) reads it in base 0, or @p deflt. */
KELVANE_API int GetThemeInt(const char *name, int deflt);
/**
 * The font of a parameter "[#]FACE[,SIZE[,COLOUR]]", or of that form in @p deflt: "#" turns
 * anti-aliasing off; the size is 12, and the colour 0, unless it is given. A face that the theme
 * carries goes before one of OpenFont().
 * @return a new font with that colour, closed by the caller with CloseFont(); null when there is
 *         neither value or it does not open
 */
KELVANE_API ifont *GetThemeFont(const char *name, const char *deflt);

/**
 * The rectangle of a parameter "X,Y,W,H[,FLAGS]" over the given one, field by field; those
 * missing at the end stay. Flags are letters that add up: b bottom, c centre, d dots, e 0x2000, f
 * justify, l mirror, m middle, r right, s 0x1000, v rotate.
 */
KELVANE_API void kv_getthemerect(const char *name, irect *out, int x, int y, int w, int h,
                                 int flags);
/**
 * kv_getthemerect(), then negative positions count from the far edge of the screen and negative
 * sizes up to it: -1 reaches it.
 */
KELVANE_API void GetThemeRect(const char *name, irect *out, int x, int y, int w, int h, int flags);

/**
 * Follows a parameter that names another one, four names at most. A text ":FILE:KEY[:DEFAULT]" is
 * read from that configuration file; the default, or nothing, counts where there is no such file.
 * @param out gets at most @p outlen bytes, the ending NUL among them
 * @return 1; 0 for null arguments, an @p outlen below 1, or a text ":FILE" without a key
 */
KELVANE_API int resolve_resource_name(const char *name, char *out, int outlen);

/** The style that suits the device: 3 touch panel and keys, 2 touch panel, 1 keys, 0 neither. */
KELVANE_API int GetDefaultAppStyle(void);
/**
 * The style of an application, "NAME.application.style", else that of all, "application.style",
 * else the one that suits the device.
 * @param app its name; null or "default" for all applications
 */
KELVANE_API int GetAppStyle(const char *app);
/** GetAppStyle() in a new record, freed by the caller with free(3); null without memory. */
KELVANE_API iappstyle *GetAppStyleEx(const char *app);
/** "application.style" as it was at first asked for, else the style that suits the device. */
KELVANE_API int GetAppGlobalStyle(void);

/** @name Groups of parameters
 * Each call reads the group anew and opens its fonts.
 * @{ */
KELVANE_API itaskmgr_properties LoadTaskManagerProperties(void);
KELVANE_API icaption_properties LoadApplicationCaptionProperties(void);
/** The icons are new bitmaps, freed by the caller with free(3); they may be null. */
KELVANE_API ipager LoadPagerProperties(void);
/** @param key the selection's name; what it lacks is taken from "default", which null means too */
KELVANE_API iselection_style LoadSelectionProperties(const char *key);
KELVANE_API icontext_menu_properties LoadContextMenuProperties(void);
/** @} */

KELVANE_END_DECLS

#endif
