// SPDX-License-Identifier: MIT
// Any bytes as the parameter text of a theme: every value is read in each form that it may have.
#include <cstdint>
#include <string>

#include "device_folder.h"
#include "internal.h"
#include "kelvane/hash.h"
#include "kelvane/theme.h"
#include "theme/parameter_text.h"
#include "theme/parameters.h"
#include "theme/source.h"

namespace {

ihash table;

void read_all_forms(const char *name) {
    char out[16];
    resolve_resource_name(name, out, sizeof out);
    irect rect;
    kvstate.orientation = 1 - kvstate.orientation;
    GetThemeRect(name, &rect, 1, 2, 3, 4, 5);
    GetThemeInt(name, 0);
    theme::parse_font(GetThemeString(name, ""));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const fuzz::DeviceFolder folder;
    if (!table) table = hash_new(1021);
    hash_clear(table);
    theme::source.text = [](const char *name) {
        return static_cast<const char *>(hash_find(table, name));
    };
    std::string text(data, data + size);
    theme::read_parameters(text.data(), text.size(), table);
    const fuzz::Visit visit(folder);
    hash_enumerate(
        table, nullptr, [](const char *name, void *, void *) { return read_all_forms(name), 0; },
        nullptr);
    return 0;
}
