// SPDX-License-Identifier: MIT
// Requests to the system monitor, of which only the secrets' two are emulated.
#include <algorithm>
#include <cstring>
#include <string_view>

#include "ground/log.h"
#include "hw.h"

namespace {

enum : int { ENCIPHER = 260, DECIPHER = 261 };

constexpr std::string_view mark = "(encrypted):";
constexpr int mark_size = static_cast<int>(mark.size());

int encipher(char *buffer, int in, int capacity) {
    if (capacity - in < mark_size) return 0;
    std::memmove(buffer + mark_size, buffer, static_cast<size_t>(in));
    std::memcpy(buffer, mark.data(), mark.size());
    return in + mark_size;
}

int decipher(char *buffer, int in, int capacity) {
    int count = std::min(in, capacity - mark_size);
    if (count <= 0) return 0;
    std::memmove(buffer, buffer + mark_size, static_cast<size_t>(count));
    return count;
}

int answer(int cmd, int param, void *buffer, int in, int out) {
    tq_print_log2(LOG_INFO_LEVEL, "IPC request: %i param=%i in=%i out=%i\n", cmd, param, in, out);
    if (!buffer || in < 0) return 0;
    char *bytes = static_cast<char *>(buffer);
    if (cmd == ENCIPHER) return encipher(bytes, in, std::max(in, out));
    if (cmd == DECIPHER) return decipher(bytes, in, std::max(in, out));
    return 0;
}

} // namespace

int hw_ipcrequest(int cmd, int param, void *buffer, int in, int out, ...) {
    return answer(cmd, param, buffer, in, out);
}

int hw_ipcrequest_secure(int cmd, int param, void *buffer, int in, int out, ...) {
    return answer(cmd, param, buffer, in, out);
}

int hw_ipcread(void *, int) {
    return 0;
}
int hw_ipcreply(const void *, int) {
    return 0;
}
int hw_winmessage(int, const char *, const char *, int) {
    return 0;
}
void hw_uiclear(void) {}
int hw_uiquery(void) {
    return 0;
}
void hw_uiresponse(int) {}
