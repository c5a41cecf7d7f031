// SPDX-License-Identifier: MIT
// Starts the application on devices of its own, and compares its frames and updates.
#include "play.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <stdexcept>

#include "compare.h"
#include "process.h"

namespace test {
namespace {

namespace fs = std::filesystem;

const char *const trace_name = "trace.jsonl";

// The script itself, or a copy with the line that turns the device first.
fs::path script_of(const Case &one, const fs::path &folder) {
    if (one.orientation.empty()) return one.script;
    std::ifstream from(one.script);
    std::ofstream to(folder / one.script.filename());
    to << "orientation " << one.orientation << "\n" << from.rdbuf();
    return folder / one.script.filename();
}

Command command_of(const Case &one, const Options &options, const fs::path &folder) {
    Command c;
    c.words = options.application;
    c.words.insert(c.words.end(), one.files.begin(), one.files.end());
    c.folder = folder.string();
    c.environment = {"KELVANE_DEVICE=headless", "KELVANE_SCRIPT=" + script_of(one, folder).string(),
                     std::string("KELVANE_TRACE=") + trace_name};
    if (one.has_tasks) c.environment.push_back("KELVANE_TASKS=" + (folder / "tasks").string());
    c.log = (folder / "log").string();
    return c;
}

std::vector<std::string> pictures_in(const fs::path &folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder, error))
        if (entry.path().extension() == ".png") names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

void compare(const Case &one, const fs::path &folder, Result &result) {
    const auto frames = pictures_in(folder), meant = pictures_in(one.expected);
    for (const std::string &frame : frames) {
        if (!std::binary_search(meant.begin(), meant.end(), frame)) {
            result.faults.push_back(frame + ": no such picture in " + one.expected.string());
            continue;
        }
        const fs::path difference = folder / ("difference-" + frame);
        const std::string wrong =
            compare_pictures(one.expected / frame, folder / frame, difference);
        if (!wrong.empty()) result.faults.push_back(std::string(frame).append(": ").append(wrong));
    }
    for (const std::string &frame : one.frames)
        if (frame.find('/') != std::string::npos || !frame.ends_with(".png"))
            result.faults.push_back(frame + ": only pictures with a plain NAME.png are compared");
    for (const std::string &frame : meant)
        if (!std::binary_search(frames.begin(), frames.end(), frame))
            result.faults.push_back(frame + ": the script saved no such picture");
    if (!fs::exists(one.expected / trace_name)) return;
    const std::string wrong = compare_traces(one.expected / trace_name, folder / trace_name);
    if (!wrong.empty()) result.faults.push_back(std::string(trace_name) + ": " + wrong);
}

// Pictures of the same pixels stay the files that they are.
void update(const Case &one, const Options &options, const fs::path &folder, Result &result) {
    const auto frames = pictures_in(folder);
    const bool had_trace = fs::exists(one.expected / trace_name);
    if (!frames.empty() || options.with_traces) fs::create_directories(one.expected);
    const auto keep = [&](const std::string &name) {
        fs::copy_file(folder / name, one.expected / name, fs::copy_options::overwrite_existing);
        result.is_updated = true;
    };
    for (const std::string &frame : frames)
        if (!fs::exists(one.expected / frame) ||
            !compare_pictures(one.expected / frame, folder / frame, folder / ".difference").empty())
            keep(frame);
    for (const std::string &frame : pictures_in(one.expected))
        if (!std::binary_search(frames.begin(), frames.end(), frame))
            result.is_updated |= fs::remove(one.expected / frame);
    if ((had_trace || options.with_traces) &&
        !have_same_bytes(one.expected / trace_name, folder / trace_name))
        keep(trace_name);
}

void start_and_judge(const Case &one, const Options &options, Devices &devices,
                     const fs::path &folder, Result &result) {
    const std::string wrong = devices.make(one.device, folder);
    if (!wrong.empty()) return result.faults.push_back(wrong);
    const Command command = command_of(one, options, folder);
    const Ending ending = run(command, std::chrono::seconds(options.limit_s));
    if (!ending.is_good())
        result.faults.push_back(options.application[0] + " " + told(ending) +
                                end_of_log(command.log));
    for (const std::string &file : devices.changed_data(one.device))
        result.faults.push_back(file + " was written over, which other scripts read too");
    if (!result.faults.empty()) return;
    if (options.frames == Frames::update)
        update(one, options, folder, result);
    else
        compare(one, folder, result);
}

// Only what looks like the folder of an earlier run is removed.
bool is_replaceable(const fs::path &folder) {
    return !fs::exists(fs::symlink_status(folder)) || fs::exists(folder / "system/.kelvane-device");
}

} // namespace

Result play(const Case &one, const Options &options, Devices &devices, const fs::path &place) {
    const auto start = std::chrono::steady_clock::now();
    Result result{one.name, 0, {}, false};
    try {
        const fs::path folder = place / one.name;
        if (!is_replaceable(folder))
            throw std::runtime_error(folder.string() + " is there, and not by this tool");
        fs::remove_all(folder);
        fs::create_directories(folder);
        start_and_judge(one, options, devices, folder, result);
    } catch (const std::exception &error) {
        result.faults.emplace_back(error.what());
    }
    result.seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return result;
}

} // namespace test
