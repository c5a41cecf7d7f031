// SPDX-License-Identifier: MIT
// kelvane-theme list: what is in a theme file, a line an item.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "commands.h"
#include "packed.h"

namespace tool {
namespace {

std::string description(const Unpacked &resource) {
    switch (resource.kind) {
    case Kind::picture: {
        const Picture &p = *resource.picture;
        return "picture  " + std::to_string(p.width) + " x " + std::to_string(p.height) +
               (p.has_holes() ? ", transparent" : "");
    }
    case Kind::font:
        return "font     " + std::to_string(resource.block.size) + " bytes";
    case Kind::unknown:
        return "unknown  " + std::to_string(resource.block.size) + " bytes";
    case Kind::damaged:
        break;
    }
    return "damaged";
}

} // namespace

int list(const std::filesystem::path &file) {
    Mistakes mistakes;
    if (const auto container = open_theme(file, mistakes)) {
        const ThemeText text = read_text(file, *container, mistakes);
        std::printf("%zu parameters, %zu translations, %zu resources\n", text.parameters.size(),
                    text.translations.size(), container->names().size());
        for (const std::string &name : container->names()) {
            const Unpacked resource = read_resource(*container, name);
            std::printf("%-32s %s\n", printable(name).c_str(), description(resource).c_str());
            if (resource.kind == Kind::damaged)
                mistakes.add({file}, name + " is damaged; pack the theme again");
        }
    }
    mistakes.print();
    return mistakes.any() ? EXIT_FAILURE : EXIT_SUCCESS;
}

} // namespace tool
