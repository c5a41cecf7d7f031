// SPDX-License-Identifier: MIT
// Any bytes as the parameter text of a theme: every value is read in each form that it may have.
#include <cstdint>
#include <string>

#include "device_folder.h"
#include "internal.h"
#include "kelvane/theme.h"
#include "theme/parameter_text.h"
#include "theme/parameters.h"
#include "theme/source.h"

namespace {

ground::TextTable table;

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
    table.clear();
    theme::source.text = [](const char *name) { return ground::find_text(table, name); };
    std::string text(data, data + size);
    theme::read_parameters(text.data(), text.size(), table);
    const fuzz::Visit visit(folder);
    for (const auto &[name, value] : table) read_all_forms(name.c_str());
    return 0;
}
