// SPDX-License-Identifier: MIT
// The translations of the present language, for those who add many.
#pragma once

#include "ground/hash_access.h"

namespace lang {

// Adds as AddTranslation() does, while nothing else changes the translations. Throws bad_alloc.
HashFiller translation_filler();

} // namespace lang
