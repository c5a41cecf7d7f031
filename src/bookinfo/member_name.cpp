// SPDX-License-Identifier: MIT
// Resolves references between the members of an archive.
#include "bookinfo/member_name.h"

#include <algorithm>
#include <cstdint>

namespace book {
namespace {

int hexadecimal(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    const int small = c | 0x20;
    return small >= 'a' && small <= 'f' ? small - 'a' + 10 : -1;
}

std::string without_escapes(std::string_view text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool escapes = text[i] == '%' && i + 2 < text.size();
        const int high = escapes ? hexadecimal(text[i + 1]) : -1,
                  low = escapes ? hexadecimal(text[i + 2]) : -1;
        out += high < 0 || low < 0 ? text[i] : static_cast<char>(high << 4 | low);
        if (high >= 0 && low >= 0) i += 2;
    }
    return out;
}

} // namespace

std::string resolve_member(std::string_view from, std::string_view reference) {
    const std::string path = without_escapes(reference.substr(0, reference.find('#')));
    if (path.empty() || path.front() == '/' || path.find(':') != path.npos) return {};
    std::string member(from.substr(0, from.rfind('/') + 1)); // a folder ends with "/"
    std::string_view rest = path;
    while (!rest.empty()) {
        const size_t end = std::min(rest.find('/'), rest.size());
        const std::string_view name = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (name == "..") {
            if (member.empty()) return {};
            member.pop_back();
            member.resize(member.rfind('/') + 1);
        } else if (!name.empty() && name != ".") {
            member.append(name) += rest.empty() && path.back() != '/' ? "" : "/";
        }
    }
    return member;
}

} // namespace book
