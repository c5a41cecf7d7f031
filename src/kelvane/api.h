/* SPDX-License-Identifier: MIT
 * Marks what the shared object exports. Applications never need these names. */
#ifndef KELVANE_API_H
#define KELVANE_API_H

#ifdef __cplusplus
#define KELVANE_BEGIN_DECLS extern "C" {
#define KELVANE_END_DECLS   }
#else
#define KELVANE_BEGIN_DECLS
#define KELVANE_END_DECLS
#endif

/** Every exported function carries this mark; everything else is hidden. */
#define KELVANE_API __attribute__((visibility("default")))

#endif
