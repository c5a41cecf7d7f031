// SPDX-License-Identifier: MIT
// The handler of dialogs, by which the stack tells whether one has the input.
#pragma once

namespace dialogs {

int question_handler(int type, int par1, int par2);

} // namespace dialogs
