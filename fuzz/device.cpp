// SPDX-License-Identifier: MIT
// Any text as a description word, and as the data of a monitor request of any size.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "hw.h"

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

void describe(const std::string &text) {
    loadHwConfigEmulator(text.c_str());
    require(fromStringToLongLong((" " + text + "\t").c_str()) ==
            fromStringToLongLong(text.c_str()));
    require(device_display_width() >= 480 && device_display_height() >= 800);
    require(hw_depth() >= 1 && hw_depth() <= 8);
    require(*hw_enum_wireless() == nullptr || device_wifi());
}

// The first two bytes choose the sizes; the buffer has not a byte more than it must.
void request(const uint8_t *data, int size) {
    int in = std::min<int>(data[0], size), out = data[1];
    for (int cmd : {260, 261}) {
        std::vector<uint8_t> buffer(static_cast<size_t>(std::max(in, out)));
        std::copy_n(data, in, buffer.begin());
        int result = hw_ipcrequest(cmd, 0, buffer.data(), in, out);
        require(result >= 0 && result <= std::max(in, out));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    describe(std::string(data, data + size));
    if (size >= 2) request(data, static_cast<int>(size));
    return 0;
}
