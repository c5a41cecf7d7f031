// SPDX-License-Identifier: MIT
// Reports as text: for people, for programs, and as a picture.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "summary.h"

namespace report {

// Appends to a text.
[[gnu::format(printf, 2, 3)]] void add(std::string &out, const char *format, ...);

// What the update came from, as people are told.
std::string caller(const std::string &call);

std::string as_table(const Summary &summary);
// One array of objects.
std::string as_json(const std::vector<Summary> &summaries);
// A timeline in SVG: a band for each ten seconds in which something happened, a lane for each of
// the twelve calls with the most time on the panel, and one for the others. Nothing when there are
// more than 1,000 bands.
std::optional<std::string> as_svg(const std::vector<Update> &updates);

} // namespace report
