// SPDX-License-Identifier: MIT
// A theme file as list and unpack see it.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

#include "mistakes.h"
#include "resources.h"
#include "text.h"
#include "theme/container.h"

namespace tool {

// Null, after adding to the mistakes, for a file that is no theme or unpacks to more than any theme
// does. What the index names in vain is added to the mistakes, too.
std::unique_ptr<theme::Container> open_theme(const std::filesystem::path &file, Mistakes &mistakes);

// The parameter text. Of lines with one name the last counts, as for the library.
ThemeText read_text(const std::filesystem::path &file, const theme::Container &container,
                    Mistakes &mistakes);

enum class Kind { damaged, picture, font, unknown };

// A resource, unpacked.
struct Unpacked {
    Kind kind = Kind::damaged;
    theme::Block block;
    std::optional<Picture> picture;

    std::string_view bytes() const {
        return {reinterpret_cast<const char *>(block.bytes.get()), block.size};
    }
};
Unpacked read_resource(const theme::Container &container, const std::string &name);

} // namespace tool
