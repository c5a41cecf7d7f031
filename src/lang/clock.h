// SPDX-License-Identifier: MIT
// Times of the day as people read them.
#pragma once

#include <string>

namespace lang {

// "14:30", or "2:30 PM" where the setting "timeformat" is 1.
std::string time_text(int hour, int minute);

} // namespace lang
