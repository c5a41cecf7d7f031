// SPDX-License-Identifier: MIT
// What the configuration needs from the layers above it.
#pragma once

namespace config {

// A request to the system service: `insize` bytes of `data` go out, the answer of at most `outsize`
// bytes comes back in their place. The result is above 0 when the service has answered.
using service_request = int (*)(int cmd, int param, unsigned char *data, int insize, int outsize);

// Installs the way to the service that enciphers and deciphers secrets. The runtime does so when
// the library is loaded; null means that there is none: secrets are then neither written nor read.
void set_cipher(service_request request);

inline constexpr int REQUEST_ENCIPHER = 260;
inline constexpr int REQUEST_DECIPHER = 261;

} // namespace config
