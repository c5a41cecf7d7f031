// SPDX-License-Identifier: MIT
// Makes devices, starts the application on them, and compares its frames and updates.
#include "play.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include "compare.h"
#include "process.h"

namespace test {
namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds device_limit{60};
constexpr size_t last_lines = 20;
constexpr int64_t most_log = 65536; // of its end
const char *const trace_name = "trace.jsonl";

// Beside this program, where it was built or installed; else wherever the shell finds it.
std::string device_tool() {
    std::error_code error;
    const fs::path here = fs::read_symlink("/proc/self/exe", error).parent_path();
    for (const fs::path &path : {here / "kelvane-device", here.parent_path() / "kelvane-device"})
        if (fs::is_regular_file(path, error)) return path.string();
    return "kelvane-device";
}

std::string end_of(const fs::path &log) {
    std::ifstream stream(log, std::ios::ate);
    const auto size = static_cast<int64_t>(stream.tellg());
    stream.seekg(std::max<int64_t>(size - most_log, 0));
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    std::string text;
    for (size_t i = lines.size() - std::min(lines.size(), last_lines); i < lines.size(); ++i)
        text += "\n  | " + lines[i];
    return text;
}

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

bool is_same(const fs::path &a, const fs::path &b) {
    std::ifstream x(a, std::ios::binary), y(b, std::ios::binary);
    using Bytes = std::istreambuf_iterator<char>;
    return x && y && std::equal(Bytes(x), Bytes(), Bytes(y), Bytes());
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
        !is_same(one.expected / trace_name, folder / trace_name))
        keep(trace_name);
}

void start_and_judge(const Case &one, const Options &options, Devices &devices,
                     const fs::path &folder, Result &result) {
    const std::string wrong = devices.make(one.device, folder);
    if (!wrong.empty()) return result.faults.push_back(wrong);
    const Command command = command_of(one, options, folder);
    const Ending ending = run(command, std::chrono::seconds(options.limit_s));
    if (!ending.is_good())
        result.faults.push_back(options.application[0] + " " + told(ending) + end_of(command.log));
    else if (options.frames == Frames::update)
        update(one, options, folder, result);
    else
        compare(one, folder, result);
}

} // namespace

std::string Devices::make_kind(const std::vector<std::string> &options, const fs::path &kind) {
    Command c;
    c.words = options;
    c.words.insert(c.words.begin(), device_tool());
    c.words.push_back(kind.string());
    c.folder = place_.string();
    c.log = kind.string() + ".log";
    const Ending ending = run(c, device_limit);
    return ending.is_good() ? "" : "kelvane-device " + told(ending) + end_of(c.log);
}

// Fonts and themes are large, and only read.
std::string Devices::make(const std::vector<std::string> &options, const fs::path &folder) {
    const std::lock_guard lock(mutex_);
    if (!kinds_.contains(options)) {
        const fs::path made = place_ / (".device-" + std::to_string(kinds_.size()));
        fs::remove_all(made); // of an earlier run, with other options perhaps
        if (std::string wrong = make_kind(options, made); !wrong.empty()) return wrong;
        kinds_[options] = made;
    }
    const fs::path &kind = kinds_[options];
    for (const fs::directory_entry &entry : fs::directory_iterator(kind / "system")) {
        const fs::path to = folder / "system" / entry.path().filename();
        const std::string name = to.filename().string();
        fs::create_directories(to.parent_path());
        if (name == "fonts" || name == "themes")
            fs::create_directory_symlink(entry.path(), to);
        else
            fs::copy(entry.path(), to,
                     fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    }
    return "";
}

namespace {

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
