// SPDX-License-Identifier: MIT
// Settings that the system service enciphers before they are saved.
#include <cstring>

#include "config/handle.h"
#include "config/hooks.h"
#include "kelvane/config.h"

namespace config {

Hooks hooks;

namespace {

constexpr size_t longest_secret = 64;
constexpr size_t enciphered_size = 160;

// A string that the service turns into another one, in place. The byte behind the service's room
// ends it in any case.
struct Message {
    char text[enciphered_size + 1] = {};
    bool answered = false;

    Message(const char *value, size_t length, int request) {
        std::memcpy(text, value, length);
        answered = hooks.service(request, 0, reinterpret_cast<unsigned char *>(text),
                                 static_cast<int>(length + 1), enciphered_size) > 0;
        text[enciphered_size] = '\0';
    }
};

} // namespace

} // namespace config

void WriteSecret(iconfig *c, const char *name, const char *value) {
    using namespace config;
    if (!c || !name || !value) return;
    const size_t length = strnlen(value, longest_secret + 1);
    if (length > longest_secret) return;
    // What the service has not enciphered must not reach the file.
    const Message secret(value, length, REQUEST_ENCIPHER);
    if (secret.answered) write(c, name, secret.text);
}

char *ReadSecret(iconfig *c, const char *name, const char *deflt) {
    using namespace config;
    const char *value = c && name ? find(c, name) : nullptr;
    if (!value) return const_cast<char *>(deflt);
    const size_t length = std::strlen(value);
    if (length >= enciphered_size) return const_cast<char *>(value);
    const Message secret(value, length, REQUEST_DECIPHER);
    char *copy = secret.answered ? strdup(secret.text) : nullptr;
    return copy ? copy : const_cast<char *>(deflt);
}
