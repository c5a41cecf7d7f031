// SPDX-License-Identifier: MIT
// kelvane-test: plays scripts with an application, several at once, and compares what comes.
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <sstream>
#include <string>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <vector>

#include "options.h"
#include "play.h"
#include "report.h"
#include "scripts.h"

namespace {

namespace fs = std::filesystem;

constexpr int usage_error = 2;

std::vector<test::Result> play_all(const std::vector<test::Case> &cases,
                                   const test::Options &options, const fs::path &place) {
    test::Devices devices(place);
    std::vector<test::Result> results(cases.size());
    std::atomic<size_t> next = 0;
    std::mutex printing;
    const auto work = [&] {
        for (size_t i = next++; i < cases.size(); i = next++) {
            results[i] = play(cases[i], options, devices, place);
            const std::lock_guard lock(printing);
            print(results[i]);
        }
    };
    const unsigned cores = std::max(std::thread::hardware_concurrency(), 1U);
    const size_t wanted = options.jobs > 0 ? static_cast<size_t>(options.jobs) : cores;
    {
        std::vector<std::jthread> workers;
        for (size_t i = 1; i < std::min(wanted, cases.size()); ++i) workers.emplace_back(work);
        work();
    }
    return results;
}

std::error_code last_error() {
    return {errno, std::generic_category()};
}

fs::path make_place(const std::string &wanted) {
    if (!wanted.empty()) {
        fs::create_directories(wanted);
        return fs::canonical(wanted);
    }
    std::string name = (fs::temp_directory_path() / "kelvane-test-XXXXXX").string();
    if (!mkdtemp(name.data())) throw fs::filesystem_error("no folder", name, last_error());
    return name;
}

bool can_run(const fs::path &program) {
    std::error_code error;
    return fs::is_regular_file(program, error) && access(program.c_str(), X_OK) == 0;
}

// Where the shell would find it; empty when it would not.
std::string in_path(const std::string &name) {
    const char *path = std::getenv("PATH");
    std::istringstream folders(path ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');)
        if (const fs::path program = fs::path(folder.empty() ? "." : folder) / name;
            can_run(program))
            return program.string();
    return "";
}

// A program is found from here, whatever folder the application runs in.
bool find_application(test::Options &options) {
    const std::string name = options.application[0];
    const bool is_path = name.find('/') != std::string::npos;
    const std::string program = is_path ? name : in_path(name);
    options.application[0] = fs::absolute(program.empty() ? name : program).string();
    if (!program.empty() && can_run(program)) return true;
    const char *why = "is not in $PATH";
    if (is_path)
        why = fs::exists(name) ? "is no program that can be run" : "is not there";
    else if (fs::exists(name))
        why = "is not in $PATH; ./ before it means the one here";
    std::fprintf(stderr, "kelvane-test: %s %s\n", name.c_str(), why);
    return false;
}

// What passed needs no folder any more, when none was asked for.
void clean(const fs::path &place, const std::vector<test::Result> &results, bool is_kept) {
    std::error_code error;
    for (const test::Result &r : results)
        if (r.faults.empty() && !is_kept) fs::remove_all(place / r.name, error);
    const bool any_failed = std::any_of(results.begin(), results.end(),
                                        [](const test::Result &r) { return !r.faults.empty(); });
    if (is_kept) return;
    if (!any_failed)
        fs::remove_all(place, error);
    else
        std::printf("what failed is in %s\n", place.c_str());
}

int run(test::Options options) {
    if (!fs::is_directory(options.folder)) {
        std::fprintf(stderr, "kelvane-test: %s is no folder\n", options.folder.c_str());
        return usage_error;
    }
    if (!find_application(options)) return usage_error;
    const auto cases = find_cases(options);
    if (cases.empty()) {
        std::fprintf(stderr, "kelvane-test: no script in %s is named so\n", options.folder.c_str());
        return usage_error;
    }
    const fs::path place = make_place(options.output);
    const auto results = play_all(cases, options, place);
    const auto failed = std::count_if(results.begin(), results.end(),
                                      [](const test::Result &r) { return !r.faults.empty(); });
    std::printf("%td passed, %td failed\n", static_cast<ptrdiff_t>(results.size()) - failed,
                failed);
    const bool is_written = options.junit.empty() || write_junit(options.junit, results);
    clean(place, results, !options.output.empty());
    return failed == 0 && is_written ? 0 : 1;
}

} // namespace

int main(int count, char **arguments) {
    const std::vector<std::string> words(arguments + 1, arguments + count);
    if (words == std::vector<std::string>{"--help"}) return std::fputs(test::usage, stdout) < 0;
    if (words == std::vector<std::string>{"--version"})
        return std::puts("kelvane-test " KELVANE_VERSION) < 0;
    const auto options = test::parse(words);
    if (!options) return usage_error;
    try {
        return run(*options);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "kelvane-test: %s\n", error.what());
        return 1;
    }
}
