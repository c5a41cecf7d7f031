// SPDX-License-Identifier: MIT
// The translations of the present language, for those who add many or forget them.
#pragma once

#include "ground/hash_access.h"

namespace lang {

// Adds as AddTranslation() does, while nothing else changes the translations. Throws bad_alloc.
HashFiller translation_filler();

// Forgets the language: every key stands for itself.
void reset();

} // namespace lang
