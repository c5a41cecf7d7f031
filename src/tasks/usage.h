// SPDX-License-Identifier: MIT
// The optional library that counts which applications are used.
#pragma once

namespace tasks {

// This process is about to become an application.
void report_start(const char *name, char *const *arguments);

} // namespace tasks
