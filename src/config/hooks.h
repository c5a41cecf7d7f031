// SPDX-License-Identifier: MIT
// What the configuration needs from the layers above it.
#pragma once

namespace config {

// A request to the system service: `insize` bytes of `data` go out, the answer of at most `outsize`
// bytes comes back in their place. The result is above 0 when the service has answered.
using service_request = int (*)(int cmd, int param, unsigned char *data, int insize, int outsize);

// The service as the device gives it, for which no screen needs to be open. The runtime defines it.
int system_service(int cmd, int param, unsigned char *data, int insize, int outsize);

struct Hooks {
    // Enciphers and deciphers secrets. What gets no answer is neither written nor read.
    service_request service = system_service;
};
extern Hooks hooks;

inline constexpr int REQUEST_ENCIPHER = 260;
inline constexpr int REQUEST_DECIPHER = 261;

} // namespace config
