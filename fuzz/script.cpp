// SPDX-License-Identifier: MIT
// Any bytes as a script. What is accepted, and only that, may be performed.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "hw_linux/input.h"
#include "hw_linux/script.h"

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

void check(const hw::Action &action) {
    require(action.delay_ms >= 0);
    switch (action.verb) {
    case hw::Verb::key:
        require(action.par1 >= 0 && action.par1 < hw::key_bits);
        break;
    case hw::Verb::command:
        require(action.par1 >= 201 && action.par1 <= 2110);
        break;
    case hw::Verb::frame:
    case hw::Verb::await:
        require(!action.file.empty());
        break;
    case hw::Verb::clock:
    case hw::Verb::pointer:
    case hw::Verb::raw:
    case hw::Verb::close:
        break;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const std::string_view text(reinterpret_cast<const char *>(data), size);
    const hw::Script script = hw::parse_script(text);
    for (const hw::Action &action : script.actions) check(action);
    int last_line = 0;
    for (const hw::ScriptError &error : script.errors) {
        require(error.line > last_line && !error.message.empty());
        last_line = error.line;
    }
    require(script.final_delay_ms >= 0);
    return 0;
}
