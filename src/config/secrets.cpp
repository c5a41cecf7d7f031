// SPDX-License-Identifier: MIT
#include <cstring>

#include "config/handle.h"
#include "config/hooks.h"
#include "kelvane/config.h"

namespace config {
namespace {

constexpr size_t longest_secret = 64;
constexpr size_t enciphered_size = 160;

service_request cipher;

// A string that the service turns into another one, in place. The byte behind the service's room
// ends it in any case.
struct message {
    char text[enciphered_size + 1] = {};

    message(const char *value, size_t length, int request) {
        std::memcpy(text, value, length);
        cipher(request, 0, reinterpret_cast<unsigned char *>(text), static_cast<int>(length + 1),
               enciphered_size);
        text[enciphered_size] = '\0';
    }
};

} // namespace

void set_cipher(service_request request) {
    cipher = request;
}

} // namespace config

extern "C" {

void WriteSecret(iconfig *c, const char *name, const char *value) {
    using namespace config;
    if (!c || !name || !value || !cipher) return;
    const size_t length = strnlen(value, longest_secret + 1);
    if (length > longest_secret) return;
    write(c, name, message(value, length, REQUEST_ENCIPHER).text);
}

char *ReadSecret(iconfig *c, const char *name, const char *deflt) {
    using namespace config;
    const char *value = c && name ? find(c, name) : nullptr;
    if (!value) return const_cast<char *>(deflt);
    const size_t length = std::strlen(value);
    if (length >= enciphered_size) return const_cast<char *>(value);
    if (!cipher) return const_cast<char *>(deflt);
    return strdup(message(value, length, REQUEST_DECIPHER).text);
}
}
