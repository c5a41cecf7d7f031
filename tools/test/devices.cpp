// SPDX-License-Identifier: MIT
// Makes devices with kelvane-device, and copies of them that cost little.
#include "devices.h"

#include <algorithm>
#include <chrono>
#include <system_error>

#include "process.h"

namespace test {
namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds limit{60};
constexpr const char *data_folders[] = {"dictionaries", "fonts", "language", "themes"};

// Beside this program, where it was built or installed; else wherever the shell finds it.
std::string device_tool() {
    std::error_code error;
    const fs::path here = fs::read_symlink("/proc/self/exe", error).parent_path();
    for (const fs::path &path : {here / "kelvane-device", here.parent_path() / "kelvane-device"})
        if (fs::is_regular_file(path, error)) return path.string();
    return "kelvane-device";
}

// The files that come with the device.
std::vector<fs::path> data_of(const fs::path &system) {
    std::vector<fs::path> files;
    for (const char *folder : data_folders)
        for (const fs::directory_entry &entry : fs::recursive_directory_iterator(system / folder))
            if (!entry.is_symlink() && entry.is_regular_file()) files.push_back(entry.path());
    return files;
}

// A second name for the same file, or where there are none, a copy.
void link_or_copy(const fs::path &from, const fs::path &to) {
    std::error_code error;
    fs::create_hard_link(from, to, error);
    if (error) fs::copy(from, to, fs::copy_options::copy_symlinks);
}

void link_data(const fs::path &from, const fs::path &to) {
    fs::create_directory(to);
    for (const fs::directory_entry &entry : fs::directory_iterator(from)) {
        const fs::path name = entry.path().filename();
        if (entry.is_directory())
            link_data(entry.path(), to / name);
        else
            link_or_copy(entry.path(), to / name);
    }
}

// Whatever an application adds, removes or replaces is its own.
void copy_device(const fs::path &from, const fs::path &to) {
    constexpr auto deep = fs::copy_options::recursive | fs::copy_options::copy_symlinks;
    fs::create_directories(to);
    for (const fs::directory_entry &entry : fs::directory_iterator(from)) {
        const fs::path name = entry.path().filename();
        const bool is_data = std::find(std::begin(data_folders), std::end(data_folders), name) !=
                             std::end(data_folders);
        if (is_data)
            link_data(entry.path(), to / name);
        else
            fs::copy(entry.path(), to / name, deep);
    }
}

} // namespace

// Empty, or what is wrong.
std::string Devices::make_kind(const std::vector<std::string> &options, const fs::path &folder) {
    fs::remove_all(folder); // of an earlier run, with other options perhaps
    Command c;
    c.words = options;
    c.words.insert(c.words.begin(), device_tool());
    c.words.push_back(folder.string());
    c.folder = place_.string();
    c.log = folder.string() + ".log";
    const Ending ending = run(c, limit);
    if (!ending.is_good()) return "kelvane-device " + told(ending) + end_of_log(c.log);
    Kind &kind = kinds_[options];
    kind.system = folder / "system";
    for (const fs::path &file : data_of(kind.system)) {
        constexpr auto writing =
            fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
        fs::permissions(file, writing, fs::perm_options::remove);
        kind.data_made = std::max(kind.data_made, fs::last_write_time(file));
    }
    return "";
}

std::string Devices::make(const std::vector<std::string> &options, const fs::path &folder) {
    fs::path system;
    {
        const std::lock_guard lock(mutex_);
        const fs::path made = place_ / (".device-" + std::to_string(kinds_.size()));
        if (!kinds_.contains(options))
            if (std::string wrong = make_kind(options, made); !wrong.empty()) return wrong;
        system = kinds_[options].system;
    }
    copy_device(system, folder / "system");
    return "";
}

std::vector<std::string> Devices::changed_data(const std::vector<std::string> &options) {
    const std::lock_guard lock(mutex_);
    const Kind &kind = kinds_.at(options);
    std::vector<std::string> changed;
    for (const fs::path &file : data_of(kind.system))
        if (fs::last_write_time(file) > kind.data_made)
            changed.push_back(file.lexically_relative(kind.system.parent_path()).string());
    return changed;
}

} // namespace test
