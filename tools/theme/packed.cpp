// SPDX-License-Identifier: MIT
// Reads a theme file and tells the kinds of its resources apart.
#include "packed.h"

#include <map>
#include <strings.h>

namespace tool {
namespace fs = std::filesystem;
namespace {

constexpr uint64_t largest_theme = 1 << 30; // unpacked

// The last value of each name stays where the first one was.
ThemeText last_values(std::string_view text) {
    ThemeText out;
    std::map<std::string, size_t> parameters, translations;
    for (const Line &line : lines_of(text)) {
        Entry entry;
        Translation translation;
        if (!split(line.text.substr(0, line.text.find('\0')), entry)) continue;
        if (split(entry, translation)) {
            const auto [at, is_new] = translations.try_emplace(entry.name, out.translations.size());
            if (is_new)
                out.translations.push_back(translation);
            else
                out.translations[at->second] = translation;
        } else {
            const auto [at, is_new] = parameters.try_emplace(entry.name, out.parameters.size());
            if (is_new)
                out.parameters.push_back(entry);
            else
                out.parameters[at->second] = entry;
        }
    }
    return out;
}

} // namespace

std::unique_ptr<theme::Container> open_theme(const fs::path &file, Mistakes &mistakes) {
    auto container = theme::Container::open(file.string());
    if (!container) {
        mistakes.add({file}, "cannot be opened; check its name and permissions");
    } else if (!container->read_header()) {
        mistakes.add({file}, "is no theme, or its beginning is damaged; pack it again");
        container.reset();
    } else if (container->unpacked_size() > largest_theme) {
        mistakes.add({file}, "would unpack to more than 1 GiB; no theme does");
        container.reset();
    } else if (container->left_out() > 0) {
        mistakes.add({file}, std::to_string(container->left_out()) +
                                 " entries of the index lead nowhere or repeat a name; pack it "
                                 "again");
    }
    return container;
}

ThemeText read_text(const fs::path &file, const theme::Container &container, Mistakes &mistakes) {
    const theme::Block block = container.unpack_parameters();
    if (!block.bytes) {
        mistakes.add({file}, "the parameter text is damaged; pack it again");
        return {};
    }
    return last_values({reinterpret_cast<const char *>(block.bytes.get()), block.size});
}

Unpacked read_resource(const theme::Container &container, const std::string &name) {
    Unpacked resource;
    resource.block = container.unpack(name);
    if (!resource.block.bytes) return resource;
    if (resource.block.size <= theme::largest_picture)
        resource.picture = to_picture({resource.block.bytes.get(), resource.block.size});
    resource.kind = resource.picture                ? Kind::picture
                    : is_truetype(resource.bytes()) ? Kind::font
                                                    : Kind::unknown;
    return resource;
}

} // namespace tool
