// SPDX-License-Identifier: MIT
// Reads all parts of a dictionary file.
#include "contents.h"

#include <cstdio>
#include <vector>

#include "kelvane/files.h"

namespace dict {

using namespace dictionary;

std::unique_ptr<Contents> read_contents(const std::filesystem::path &path) {
    using enum File::Packing;
    std::error_code error;
    file::Stream stream(std::filesystem::is_regular_file(path, error) ? kv_fopen(path.c_str(), "rb")
                                                                      : nullptr);
    if (!stream) {
        std::fprintf(stderr, "kelvane-dict: %s: cannot be read\n", path.c_str());
        return nullptr;
    }
    auto c = std::make_unique<Contents>(std::move(stream));
    if (!c->file.read_header()) {
        std::fprintf(stderr, "kelvane-dict: %s: corrupted dictionary file or wrong version\n",
                     path.c_str());
        return nullptr;
    }
    c->pairs = c->section(collation_field, none);
    c->collation.apply(c->pairs);
    c->rules = c->section(morphology_field, zlib);
    c->keyboard = c->section(keyboard_field, zlib);
    const Bytes entries = c->section(index_field, zlib);
    c->index = Index(entries, c->file.value(containers_field), c->collation);
    return c;
}

Bytes Contents::section(Field field, File::Packing packing) {
    auto bytes = file.read_section(field, packing);
    if (bytes) return std::move(*bytes);
    if (file.value(field) != 0) damaged += ' ' + std::to_string(field);
    return {};
}

void Contents::each_container(const std::function<void(size_t, Container *)> &visit) {
    Bytes packed, unpacked(file.value(limit_field));
    Container container;
    for (size_t i = 0; i < index.size(); ++i) {
        packed.resize(index.packed_size(i));
        const auto size =
            file.read(index.offset(i), packed) ? file.unpack(packed, unpacked) : std::nullopt;
        if (size) container.read({unpacked.data(), *size});
        visit(i, size ? &container : nullptr);
    }
}

} // namespace dict
