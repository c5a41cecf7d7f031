// SPDX-License-Identifier: MIT
// Lines for a terminal, and JUnit's XML.
#include "report.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string_view>

#include "ground/utf8.h"

namespace test {
namespace {

// A character that stands at these bytes. XML 1.0 has no way to write some, and what a program says
// need not be UTF-8.
std::string escaped(uint16_t character, std::string_view bytes) {
    constexpr uint16_t first_without_use = 0xFFFE, space = ' ';
    switch (character) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\n':
        return "&#10;";
    case utf8::replacement: // or, of four bytes, a character beyond 16 bits
        return bytes.size() == 4 ? std::string(bytes) : utf8::encoded(utf8::replacement);
    default:
        if (character < space) return " ";
        return std::string(character < first_without_use ? bytes : "?");
    }
}

std::string escaped(const std::string &text) {
    std::string all;
    for (const char *s = text.data(), *const end = s + text.size(); s < end;) {
        const char *const start = s;
        const uint16_t character = utf8::next(s, end);
        all += escaped(character, {start, static_cast<size_t>(s - start)});
    }
    return all;
}

std::string joined(const std::vector<std::string> &lines) {
    std::string all;
    for (const std::string &line : lines) all += (all.empty() ? "" : "\n") + line;
    return all;
}

std::string seconds(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3f", value);
    return text;
}

} // namespace

void print(const Result &result) {
    const char *word = !result.faults.empty() ? "FAILED" : result.is_updated ? "updated" : "ok";
    std::printf("%-7s %s (%.2f s)\n", word, result.name.c_str(), result.seconds);
    for (const std::string &fault : result.faults) std::printf("        %s\n", fault.c_str());
    std::fflush(stdout);
}

bool write_junit(const std::string &file, const std::vector<Result> &results) {
    const auto failed = std::count_if(results.begin(), results.end(),
                                      [](const Result &r) { return !r.faults.empty(); });
    std::ofstream xml(file);
    xml << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=\"kelvane-test\" tests=\""
        << results.size() << "\" failures=\"" << failed << "\">\n";
    for (const Result &r : results) {
        xml << "  <testcase name=\"" << escaped(r.name) << "\" time=\"" << seconds(r.seconds)
            << "\"";
        if (r.faults.empty())
            xml << "/>\n";
        else
            xml << ">\n    <failure message=\"" << escaped(joined(r.faults))
                << "\"/>\n  </testcase>\n";
    }
    xml << "</testsuite>\n";
    xml.close();
    if (xml) return true;
    std::fprintf(stderr, "kelvane-test: %s cannot be written\n", file.c_str());
    return false;
}

} // namespace test
