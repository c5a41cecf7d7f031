// SPDX-License-Identifier: MIT
// Takes the lines of a theme apart.
#include "theme/parameter_text.h"

#include <cstring>

#include "ground/fold.h"
#include "ground/lines.h"
#include "internal.h"
#include "lang/translations.h"

namespace theme {
namespace {

// A line of the parameter text: a translation, "de:@Key=text" or "*:@Key=text", or a parameter.
void add_line(char *line, ground::TextTable &parameters) {
    line += std::strspn(line, " \t");
    char *equals = std::strchr(line, '=');
    if (*line == '#' || !equals) return;
    *equals = '\0';
    char *value = equals + 1;
    for (size_t end = std::strlen(value); end > 0 && value[end - 1] == '\r'; end--)
        value[end - 1] = '\0';
    char *colon = std::strchr(line, ':');
    if (!colon) return ground::set_text(parameters, line, value);
    *colon = '\0';
    if (std::strcmp(line, "*") == 0 || ground::compare_folded(line, kvstate.locale) == 0)
        lang::add_translation(colon + 1, value);
}

} // namespace

void read_parameters(char *text, size_t size, ground::TextTable &parameters) {
    std::span<char> rest(text, size);
    while (char *line = ground::take_line(rest).data()) add_line(line, parameters);
}

} // namespace theme
