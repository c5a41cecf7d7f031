// SPDX-License-Identifier: MIT
// Starts a program in a process group of its own, and ends the group.
#include "process.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <set>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace test {
namespace {

constexpr int cannot_start = 127;
constexpr size_t last_lines = 20;
constexpr int64_t most_log = 65536; // of its end

std::vector<char *> pointers(const std::vector<std::string> &words) {
    std::vector<char *> all;
    all.reserve(words.size() + 1);
    for (const std::string &word : words) all.push_back(const_cast<char *>(word.c_str()));
    all.push_back(nullptr);
    return all;
}

std::string name_of(const std::string &setting) {
    return setting.substr(0, setting.find('='));
}

// Those of this process, unless they are set anew. What the shell says to other applications of the
// library is not meant for these.
std::vector<std::string> with_own(std::vector<std::string> environment) {
    std::set<std::string> names;
    for (const std::string &setting : environment) names.insert(name_of(setting));
    for (char **setting = environ; *setting; ++setting)
        if (!names.contains(name_of(*setting)) && !name_of(*setting).starts_with("KELVANE_"))
            environment.emplace_back(*setting);
    return environment;
}

// Runs between fork and exec in a process with threads: nothing here may allocate.
[[noreturn]] void become(const char *folder, const char *log, char *const *words,
                         char *const *env) {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int out = open(log, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    const int in = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (out >= 0 && in >= 0 && dup2(in, 0) >= 0 && dup2(out, 1) >= 0 && dup2(out, 2) >= 0 &&
        chdir(folder) == 0)
        execvpe(words[0], words, env);
    _exit(cannot_start);
}

bool ends_in_time(pid_t child, std::chrono::seconds limit) {
    const int fd =
        static_cast<int>(syscall(SYS_pidfd_open, child, 0)); // glibc 2.36 has it for C alone
    if (fd < 0) return true;                                 // waits without a limit
    pollfd watched{fd, POLLIN, 0};
    const auto end = std::chrono::steady_clock::now() + limit;
    int ready = 0;
    do {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        ready = poll(&watched, 1, static_cast<int>(std::max<int64_t>(left.count(), 0)));
    } while (ready < 0 && errno == EINTR);
    close(fd);
    return ready != 0;
}

} // namespace

Ending run(const Command &command, std::chrono::seconds limit) {
    const auto settings = with_own(command.environment);
    const auto words = pointers(command.words), env = pointers(settings);
    const pid_t child = fork();
    if (child < 0) return {Ending::Kind::not_started, errno};
    if (child == 0) become(command.folder.c_str(), command.log.c_str(), words.data(), env.data());
    setpgid(child, child); // whoever comes first
    const bool in_time = ends_in_time(child, limit);
    kill(-child, SIGKILL); // it may have left children
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (!in_time) return {Ending::Kind::hung, static_cast<int>(limit.count())};
    if (WIFSIGNALED(status)) return {Ending::Kind::killed_by_signal, WTERMSIG(status)};
    return {Ending::Kind::exited, WEXITSTATUS(status)};
}

std::string end_of_log(const std::string &log) {
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

std::string told(const Ending &ending) {
    const std::string number = std::to_string(ending.number);
    switch (ending.kind) {
    case Ending::Kind::exited:
        return "ended with status " + number;
    case Ending::Kind::killed_by_signal:
        return "ended by signal " + number + " (" + strsignal(ending.number) + ")";
    case Ending::Kind::hung:
        return "still ran after " + number + " seconds and was killed";
    case Ending::Kind::not_started:
        return std::string("could not be started: ") + std::strerror(ending.number);
    }
    return "";
}

} // namespace test
