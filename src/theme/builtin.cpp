// SPDX-License-Identifier: MIT
// Finds built-in pictures by name.
#include "theme/builtin.h"

#include <algorithm>
#include <string_view>

namespace theme {

ibitmap *builtin_image(const char *name) {
    if (!name) return nullptr;
    const auto found = std::ranges::lower_bound(
        builtin_images, std::string_view(name), {},
        [](const BuiltinImage &image) { return std::string_view(image.name); });
    if (found == builtin_images.end() || std::string_view(found->name) != name) return nullptr;
    return static_cast<ibitmap *>(const_cast<void *>(found->bitmap));
}

} // namespace theme
