// SPDX-License-Identifier: MIT
// How the lower floors reach the upper ones: each asks through a record of functions, and these two
// are the only places that fill the records and put their defaults back.
#pragma once

void install_hooks();
void remove_hooks();
