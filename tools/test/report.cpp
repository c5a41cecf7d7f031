// SPDX-License-Identifier: MIT
// Lines for a terminal, and JUnit's XML.
#include "report.h"

#include <algorithm>
#include <cstdio>
#include <fstream>

namespace test {
namespace {

// What XML 1.0 has no way to write is left out.
std::string escaped(const std::string &text) {
    std::string all;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '&')
            all += "&amp;";
        else if (c == '<')
            all += "&lt;";
        else if (c == '>')
            all += "&gt;";
        else if (c == '"')
            all += "&quot;";
        else if (c == '\n')
            all += "&#10;";
        else if (byte < 0x20)
            all += ' ';
        else if (byte < 0x7F)
            all += c;
        else
            all += '?'; // what a program says need not be UTF-8
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
