// SPDX-License-Identifier: MIT
// kelvane-theme: packs the folder of a theme into a theme file, and back.
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "commands.h"
#include "scale.h"

namespace {

constexpr int usage_error = 2;

constexpr const char *usage =
    "kelvane-theme pack [--scale PERCENT] FOLDER THEME.tqt   makes a theme of a folder\n"
    "kelvane-theme list THEME.tqt                            tells what is in a theme\n"
    "kelvane-theme unpack THEME.tqt FOLDER                   makes a folder of a theme\n"
    "kelvane-theme --help | --version\n"
    "With --scale 200, lengths, fonts and pictures are twice as large as in the folder.\n";

// 0 for what is no percentage.
int percentage(const std::string &text) {
    int percent = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), percent);
    const bool is_right = error == std::errc() && end == text.data() + text.size() &&
                          percent >= tool::least_percent && percent <= tool::most_percent;
    return is_right ? percent : 0;
}

int run(const std::vector<std::string> &words) {
    const std::string command = words.empty() ? "" : words[0];
    if (command == "pack" && words.size() == 3) return tool::pack(words[1], words[2], 100);
    if (command == "pack" && words.size() == 5 && words[1] == "--scale") {
        if (const int percent = percentage(words[2]))
            return tool::pack(words[3], words[4], percent);
        std::fprintf(stderr, "kelvane-theme: \"%s\" is no percentage; write one from %d to %d\n",
                     words[2].c_str(), tool::least_percent, tool::most_percent);
        return usage_error;
    }
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
