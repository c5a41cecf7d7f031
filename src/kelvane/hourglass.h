/* SPDX-License-Identifier: MIT */
/**
 * @file hourglass.h
 * The hourglass: a picture over the screen for as long as the application is at work.
 */
#ifndef KELVANE_HOURGLASS_H
#define KELVANE_HOURGLASS_H

#include "api.h"

KELVANE_BEGIN_DECLS

/**
 * Shows the hourglass in the middle of the screen, with an update of its own area. Calls nest: it
 * stays until HideHourglass() was called as often. Nothing without a screen or without memory.
 */
KELVANE_API void ShowHourglass(void);

/**
 * ShowHourglass() with the middle at a place, moved onto the screen: near what was tapped. One that
 * is shown already stays where it is.
 */
KELVANE_API void ShowHourglassAt(int x, int y);

/**
 * Takes back one call of the two above. With the last one the screen under the hourglass comes
 * back, with an update; but where anything was drawn over it meanwhile, or the screen was turned,
 * that stays and nothing is updated. Without such a call it does nothing.
 */
KELVANE_API void HideHourglass(void);

/**
 * The hourglass is shown when the application ends, for as long as that takes, and stays on the
 * paper. It is not at first, unless the theme's "hourglass.exit" is not 0; DisableExitHourglass()
 * switches it off again, and goes before the theme.
 */
KELVANE_API void EnableExitHourglass(void);

KELVANE_END_DECLS

#endif
