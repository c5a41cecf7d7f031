// SPDX-License-Identifier: MIT
// The kinds of state that readers keep for a book, in the order in which they are handled.
#pragma once

inline constexpr char associated_kinds[] = {'0', '1', 'z'};
