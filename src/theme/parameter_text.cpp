// SPDX-License-Identifier: MIT
#include "theme/parameter_text.h"

#include <cstring>
#include <new>
#include <strings.h>

#include "ground/hash_access.h"
#include "internal.h"
#include "kelvane/languages.h"

namespace theme {
namespace {

// A line of the parameter text: a translation, "de:@Key=text" or "*:@Key=text", or a parameter.
void add_line(char *line, hash_filler &parameters) {
    line += std::strspn(line, " \t");
    char *equals = std::strchr(line, '=');
    if (*line == '#' || !equals) return;
    *equals = '\0';
    char *value = equals + 1;
    for (size_t end = std::strlen(value); end > 0 && value[end - 1] == '\r'; end--)
        value[end - 1] = '\0';
    char *colon = std::strchr(line, ':');
    if (!colon) {
        if (!parameters.add(line, value)) throw std::bad_alloc();
        return;
    }
    *colon = '\0';
    if (std::strcmp(line, "*") == 0 || strcasecmp(line, kvstate.locale) == 0)
        AddTranslation(colon + 1, value);
}

} // namespace

void read_parameters(char *line, size_t size, ihash table) {
    hash_filler parameters(table);
    char *const end = line + size;
    while (line < end) {
        auto *feed = static_cast<char *>(std::memchr(line, '\n', end - line));
        char *const stop = feed ? feed : end;
        *stop = '\0';
        add_line(line, parameters);
        line = stop + 1;
    }
}

} // namespace theme
