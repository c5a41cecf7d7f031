// SPDX-License-Identifier: MIT
// Reads a theme file and tells the kinds of its resources apart.
#include "packed.h"

#include <map>
#include <strings.h>
#include <system_error>
#include <utility>

namespace tool {
namespace fs = std::filesystem;
namespace {

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
    // A pipe or a device would be waited for.
    std::error_code error;
    const bool is_file = fs::is_regular_file(file, error);
    file::Stream stream(is_file ? kv_fopen(file.c_str(), "rbe") : nullptr);
    if (!stream) {
        mistakes.add({file}, "cannot be opened; check its name and permissions");
        return nullptr;
    }
    auto container = std::make_unique<theme::Container>(std::move(stream));
    if (!container->read_header()) {
        mistakes.add({file}, "is no theme, or its beginning is damaged; pack it again");
        container.reset();
    } else if (container->left_out() > 0) {
        mistakes.add({file}, std::to_string(container->left_out()) +
                                 " entries of the index lead nowhere, are too large or repeat a "
                                 "name; pack it again");
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
