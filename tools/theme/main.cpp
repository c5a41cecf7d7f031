// SPDX-License-Identifier: MIT
// kelvane-theme: packs the folder of a theme into a theme file, and back.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "commands.h"

namespace {

constexpr int usage_error = 2;

constexpr const char *usage = "kelvane-theme pack FOLDER THEME.tqt     makes a theme of a folder\n"
                              "kelvane-theme list THEME.tqt            tells what is in a theme\n"
                              "kelvane-theme unpack THEME.tqt FOLDER   makes a folder of a theme\n"
                              "kelvane-theme --help | --version\n";

int run(const std::vector<std::string> &words) {
    const std::string command = words.empty() ? "" : words[0];
    if (command == "pack" && words.size() == 3) return tool::pack(words[1], words[2]);
    if (command == "list" && words.size() == 2) return tool::list(words[1]);
    if (command == "unpack" && words.size() == 3) return tool::unpack(words[1], words[2]);
    if (command == "--version" && words.size() == 1)
        return std::puts("kelvane-theme " KELVANE_VERSION) < 0;
    const bool asked = command == "--help" && words.size() == 1;
    std::fputs(usage, asked ? stdout : stderr);
    return asked ? EXIT_SUCCESS : usage_error;
}

} // namespace

int main(int argc, char **argv) try {
    const int status = run({argv + 1, argv + argc});
    if (std::fflush(stdout) == 0) return status;
    std::perror("kelvane-theme: standard output");
    return EXIT_FAILURE;
} catch (const std::exception &e) {
    std::fprintf(stderr, "kelvane-theme: %s\n", e.what());
    return EXIT_FAILURE;
}
