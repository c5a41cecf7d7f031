// SPDX-License-Identifier: MIT
// What the configuration needs from the layers above it.
#pragma once

namespace config {

// A request to the system service: `insize` bytes of `data` go out, the answer of at most `outsize`
// bytes comes back in their place. The result is above 0 when the service has answered.
using service_request = int (*)(int cmd, int param, unsigned char *data, int insize, int outsize);

struct Hooks {
    // Enciphers and deciphers secrets. What gets no answer is neither written nor read. In the
    // library it is the device's service from the start, as no screen needs to be open for it.
    service_request service = [](int, int, unsigned char *, int, int) { return 0; };
};
extern Hooks hooks;

inline constexpr int REQUEST_ENCIPHER = 260;
inline constexpr int REQUEST_DECIPHER = 261;

} // namespace config
