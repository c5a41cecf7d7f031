// SPDX-License-Identifier: MIT
// Collects mistakes and tells them.
#include "mistakes.h"

#include <cstdio>

namespace tool {
namespace {

std::string message(const Place &place, const std::string &what) {
    std::string line = place.file.string();
    if (place.line > 0) line.append(":").append(std::to_string(place.line));
    return line + ": " + what;
}

} // namespace

void Mistakes::add(const Place &place, const std::string &what) {
    lines_.push_back(message(place, what));
    ++count_;
}

void Mistakes::warn(const Place &place, const std::string &what) {
    lines_.push_back(message(place, "warning: " + what));
}

void Mistakes::print() const {
    for (const std::string &line : lines_) std::fprintf(stderr, "%s\n", printable(line).c_str());
}

std::string printable(std::string_view text) {
    std::string out;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte != 0x7F) {
            out += c;
            continue;
        }
        char escaped[5];
        std::snprintf(escaped, sizeof escaped, "\\x%02X", byte);
        out += escaped;
    }
    return out;
}

} // namespace tool
